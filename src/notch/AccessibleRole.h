#pragma once

#include <QAccessible>

class QWidget;

namespace ostrelle {

/// Gives a widget painted by ourselves the role that assistive technology shall see. Name and description stay
/// QWidget::accessibleName and accessibleDescription. Main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

/// What a widget with a role of ours has at the moment, in words: the choice of a picker. Tells those who listen.
void setAccessibleValue(QWidget &widget, const QString &value);

} // namespace ostrelle
