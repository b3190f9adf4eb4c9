#pragma once

#include "platform/LoginItem.h"
#include "platform/freedesktop/AutostartEntry.h"

#include <QDBusMessage>
#include <QPointer>

namespace ostrelle {

/// The login item of a program in a sandbox: org.freedesktop.portal.Background, which asks the user. What the user
/// decided cannot be asked there again, so the sandbox's own copy of the entry, which starts nothing, remembers it.
class PortalLoginItem final : public LoginItem
{
    Q_OBJECT
public:
    /// `command` is what the portal shall start, by its name inside the sandbox.
    PortalLoginItem(AutostartEntry memory, QStringList command, QObject *parent = nullptr);
    ~PortalLoginItem() override;

    /// Whether the program runs in a sandbox that only the portal can lead out of.
    static bool isNeeded();

    Status status() const override { return m_memory.status(); }
    void setRegistered(bool isRegistered, QObject *context, Answer answer) override;

private Q_SLOTS:
    void handleResponse(const QDBusMessage &message);

private:
    void ask();
    void finish(const QString &problem);

    AutostartEntry m_memory;
    QStringList m_command;
    bool m_isRegistered = false; ///< asked for at the moment
    int m_turn = 0;              ///< an answer to an earlier question is none any more
    QString m_requestPath;
    QPointer<QObject> m_context;
    Answer m_answer; ///< empty while nothing is asked
};

} // namespace ostrelle
