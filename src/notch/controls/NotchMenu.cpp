#include "notch/controls/NotchMenu.h"

#include "notch/PopupStyle.h"

#include <QBitmap>
#include <QPainter>

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
    // A mask and not translucency: it looks the same without a compositor.
    QBitmap shape(size());
    shape.clear();
    QPainter painter(&shape);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0, 0, -1, -1), kRadius, kRadius);
    painter.end();
    setMask(shape);
}

} // namespace ostrelle
