#pragma once

#include "platform/FileChooser.h"

#include <QDBusConnection>

#include <chrono>

class QDBusMessage;

namespace ostrelle {

class TaskScheduler;

/// One choice through org.freedesktop.portal.FileChooser. Answers once; destroying it closes the chooser, unanswered.
/// Main thread.
class PortalFileRequest final : public QObject
{
    Q_OBJECT
public:
    enum class Outcome { Closed, Unavailable }; ///< Unavailable: nobody has seen a chooser
    /// The request may be destroyed from inside.
    using Answer = std::function<void(Outcome, QStringList)>;

    PortalFileRequest(QDBusConnection bus, FileChoice choice, const TaskScheduler &scheduler, Answer answer);
    ~PortalFileRequest() override;

private Q_SLOTS:
    void handleResponse(const QDBusMessage &message);
    void handleOwnerChange(const QDBusMessage &message);

private:
    void call(const QDBusMessage &request, std::function<void(const QDBusMessage &)> replied);
    void openChooser();
    void closeChooser();
    void finish(Outcome outcome, const QStringList &paths = {});

    QDBusConnection m_bus;
    FileChoice m_choice;
    const TaskScheduler &m_scheduler;
    Answer m_answer;       ///< empty once it was given
    QString m_token;       ///< names the Request object, and nobody else knows it
    QString m_requestPath; ///< empty before the chooser was asked for
    std::chrono::nanoseconds m_asked{};
};

} // namespace ostrelle
