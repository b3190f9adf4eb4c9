#pragma once

#include <QAccessible>

class QWidget;

namespace ostrelle {

/// Gives a widget painted by ourselves the role that assistive technology shall see. Name and description stay
/// QWidget::accessibleName and accessibleDescription. Main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace ostrelle
