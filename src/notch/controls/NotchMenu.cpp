#include "notch/controls/NotchMenu.h"

#include "notch/PopupStyle.h"

#include <QAction>
#include <QStyleOptionMenuItem>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;

} // namespace

NotchMenu::NotchMenu(const NotchAppearance &appearance, QWidget *parent)
    : QMenu(parent)
{
    setToolTipsVisible(true);
    const auto apply = [this, &appearance] {
        QPalette colors = palette();
        colors.setColor(QPalette::ButtonText, menuTextColor(appearance));
        setPalette(colors);
        m_warning = menuWarningColor(appearance);
        setFont(Theme::font(FontRole::Body));
        setStyleSheet(menuStyleSheet(appearance));
    };
    connect(&appearance, &NotchAppearance::changed, this, apply);
    apply();
}

void NotchMenu::addEntry(const QString &text, const QObject *context, const std::function<void()> &action,
                         Purpose purpose)
{
    const QAction *entry = addAction(text);
    connect(entry, &QAction::triggered, context, action, Qt::QueuedConnection);
    if (purpose == Purpose::Destructive)
        m_destructive.append(entry);
}

void NotchMenu::initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const
{
    QMenu::initStyleOption(option, action);
    // On the ground of the selected one it would not be read.
    if (m_destructive.contains(action) && !option->state.testFlag(QStyle::State_Selected))
        option->palette.setColor(QPalette::ButtonText, m_warning);
}

void NotchMenu::resizeEvent(QResizeEvent *event)
{
    QMenu::resizeEvent(event);
    setMask(roundedMask(size(), kRadius));
}

} // namespace ostrelle
