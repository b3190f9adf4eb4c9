#pragma once

#include "platform/ActivationToken.h"
#include "platform/freedesktop/PortalShortcut.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <memory>

class QDBusMessage;

namespace ostrelle {

class PortalRequest;

/// A set of shortcuts bound through org.freedesktop.portal.GlobalShortcuts; a session binds once, so another set takes
/// another session. Destroying it gives the shortcuts back. Main thread.
class PortalShortcutSession final : public QObject
{
    Q_OBJECT
public:
    PortalShortcutSession(QDBusConnection bus, QList<PortalShortcut> shortcuts);
    ~PortalShortcutSession() override;

Q_SIGNALS:
    /// The user, or the desktop, has decided, and may later decide otherwise: these, by their identifiers, have keys.
    void decided(const QStringList &bound);
    void pressed(const QString &id, const ActivationToken &token);

private Q_SLOTS:
    void handleActivated(const QDBusMessage &message);
    void handleChanged(const QDBusMessage &message);
    void handleClosed();

private:
    void bind();
    void decide(const QList<PortalShortcut> &shortcuts);
    bool isOurs(const QDBusMessage &message) const;

    QDBusConnection m_bus;
    QList<PortalShortcut> m_shortcuts;
    QString m_path; ///< of the Session object; empty before there is one
    std::unique_ptr<PortalRequest> m_request;
};

} // namespace ostrelle
