#include "notch/AccessibleRole.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace ostrelle {
namespace {

constexpr char kRoleProperty[] = "ostrelleAccessibleRole";
constexpr char kValueProperty[] = "ostrelleAccessibleValue";

/// Any role; a button keeps what Qt would give it for its own: whether it is checked, and the press.
class RoleInterface final : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (const QAbstractButton *self = button()) {
            state.checkable = self->isCheckable();
            state.checked = self->isChecked();
            state.pressed = self->isDown();
        }
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        QString value = widget()->property(kValueProperty).toString();
        if (kind == QAccessible::Value)
            return value;
        QString text = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Description || value.isEmpty())
            return text;
        // The bridge passes no values that are words.
        return text.isEmpty() ? value : value + QStringLiteral(". ") + text;
    }
    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (button() && widget()->isEnabled())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString &name) override
    {
        if (button() && name == pressAction())
            button()->animateClick();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton *button() const { return qobject_cast<QAbstractButton *>(widget()); }
};

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

void setAccessibleValue(QWidget &widget, const QString &value)
{
    widget.setProperty(kValueProperty, value);
    QAccessibleValueChangeEvent event(&widget, value);
    QAccessible::updateAccessibility(&event);
}

} // namespace ostrelle
