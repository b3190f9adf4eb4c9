#pragma once

#include <QtGlobal>

#include <functional>

namespace ostrelle {

/// Ends the process with status 1 and one line when the X server is gone, after calling a handler once.
///
/// The loss is seen first by the backend's own connection or by the toolkit, which ends the process from inside with
/// nothing unwound; the toolkit's message, and an exit handler behind it, cover that order. At most one object exists.
class DisplayLoss
{
public:
    DisplayLoss();
    ~DisplayLoss();
    DisplayLoss(const DisplayLoss &) = delete;
    DisplayLoss &operator=(const DisplayLoss &) = delete;

    void setHandler(std::function<void()> handler) { m_handler = std::move(handler); }
    [[noreturn]] void end();

private:
    static void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message);
    static void handleExit();

    std::function<void()> m_handler;
    QtMessageHandler m_previousMessageHandler;
};

} // namespace ostrelle
