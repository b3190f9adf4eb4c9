#pragma once

#include "platform/DesktopRequests.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QDBusVirtualObject;

namespace ostrelle {

/// Owns the program's name on the session bus and answers org.freedesktop.Application there (Desktop Entry
/// Specification, D-Bus activation). Main thread.
class BusApplication final : public DesktopRequests
{
    Q_OBJECT
public:
    BusApplication(QString applicationId, const QStringList &actions);
    ~BusApplication() override;

private:
    void appear(QDBusConnection bus);

    QString m_applicationId;
    std::unique_ptr<QDBusVirtualObject> m_object;
    std::optional<QDBusConnection> m_bus; ///< once the name was asked for
};

} // namespace ostrelle
