#pragma once

#include "platform/freedesktop/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

namespace ostrelle {

/// Stands in for the desktop's portal of global shortcuts on the test's own bus, and for the user who decides.
class ShortcutPortal : public QDBusVirtualObject
{
public:
    ShortcutPortal();
    ~ShortcutPortal() override;

    void appear();
    void die();
    /// The user gives keys to these of the shortcuts that were asked for last.
    void grant(const QStringList &ids);
    void refuse();
    /// Later, in the desktop's settings.
    void change(const QStringList &ids);
    void press(const QString &id, const QString &activationToken);
    void closeSession();

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override;

    bool isKnown = true; ///< false: a portal that has no shortcuts
    int bound = 0;       ///< times that a set was asked for
    QStringList closedSessions;
    QStringList sessions;
    QList<PortalShortcut> shortcuts; ///< of the last set

private:
    QVariant listOf(const QStringList &ids) const;
    void respond(uint response, const QVariantMap &results);
    void emitSignal(const QString &name, const QVariantList &arguments);

    QDBusConnection m_bus;
    QString m_request;
};

} // namespace ostrelle
