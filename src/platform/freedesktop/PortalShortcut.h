#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>

class QDBusArgument;
class QVariant;

namespace ostrelle {

struct HotKey;

/// A shortcut as org.freedesktop.portal.GlobalShortcuts has it: "(sa{sv})".
struct PortalShortcut
{
    QString id;
    QVariantMap properties;

    /// `keyName` is what the user's layout prints on the key.
    static PortalShortcut from(const HotKey &key, const QString &keyName);
    static QVariant argumentFor(const QList<PortalShortcut> &shortcuts);
    /// From an answer or a signal; empty when it has another form.
    static QList<PortalShortcut> listFrom(const QVariant &argument);

    /// The user has given it keys.
    bool isBound() const;
};

/// As the desktops' specification of shortcuts writes them: "SHIFT+LOGO+v", with the names of X keysyms. Empty when the
/// key has no such name.
QString portalTrigger(const HotKey &key, const QString &keyName);

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

} // namespace ostrelle
