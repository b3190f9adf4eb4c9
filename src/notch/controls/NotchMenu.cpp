#include "notch/controls/NotchMenu.h"

#include "notch/PopupStyle.h"

namespace ostrelle {
namespace {

constexpr double kRadius = 8;

} // namespace

NotchMenu::NotchMenu(const NotchAppearance &appearance, QWidget *parent)
    : QMenu(parent)
{
    setToolTipsVisible(true);
    const auto apply = [this, &appearance] {
        setFont(Theme::font(FontRole::Body));
        setStyleSheet(menuStyleSheet(appearance));
    };
    connect(&appearance, &NotchAppearance::changed, this, apply);
    apply();
}

void NotchMenu::resizeEvent(QResizeEvent *event)
{
    QMenu::resizeEvent(event);
    setMask(roundedMask(size(), kRadius));
}

} // namespace ostrelle
