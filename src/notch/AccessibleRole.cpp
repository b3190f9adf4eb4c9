#include "notch/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace ostrelle {
namespace {

/// Makes the destructor of Qt's class accessible.
class RoleInterface final : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;
};

constexpr char kRoleProperty[] = "ostrelleAccessibleRole";

/// Qt deletes the interface itself.
QAccessibleInterface *interfaceWithRole(const QString &, QObject *object)
{
    if (object == nullptr || !object->isWidgetType())
        return nullptr;
    const QVariant role = object->property(kRoleProperty);
    if (!role.isValid())
        return nullptr;
    auto interface = std::make_unique<RoleInterface>(static_cast<QWidget *>(object), role.value<QAccessible::Role>());
    return interface.release();
}

} // namespace

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    static const bool installed = [] {
        QAccessible::installFactory(interfaceWithRole);
        return true;
    }();
    Q_UNUSED(installed);
    widget.setProperty(kRoleProperty, QVariant::fromValue(role));
    // Setting a name already made an interface with Qt's role, which would be kept.
    if (QAccessibleInterface *earlier = QAccessible::queryAccessibleInterface(&widget))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(earlier));
}

} // namespace ostrelle
