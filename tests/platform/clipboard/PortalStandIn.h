#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

namespace ostrelle {

/// Stands in for the desktop's portals on the test's own bus: settings, and files that are handed over by keys.
class PortalStandIn : public QDBusVirtualObject
{
    Q_OBJECT
public:
    using Settings = QMap<QString, QVariantMap>;

    PortalStandIn();
    ~PortalStandIn() override;

    static QString path();
    QDBusConnection bus() const { return m_bus; }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override;

    Settings settings;
    QMap<QString, QStringList> files; ///< by their keys
    bool takesFiles = true;           ///< else it is as if there were no portal for them

private:
    void addFiles(const QVariantList &arguments);

    QDBusConnection m_bus;
};

} // namespace ostrelle
