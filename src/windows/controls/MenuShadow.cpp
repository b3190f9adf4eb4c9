#include "windows/controls/MenuShadow.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/controls/DropShadow.h"

#include <QMenu>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kOffset = 10;
constexpr double kDeviation = 12;
constexpr double kDarkOpacity = 0.48;
constexpr double kLightOpacity = 0.20;

} // namespace

MenuShadow::MenuShadow(const NotchAppearance &appearance, const QMenu &menu, double cornerRadius, QWidget *window)
    : QWidget(window)
{
    // By this name the toolkit leaves it out of what it tells assistive technology.
    setObjectName(QStringLiteral("qt_rubberband"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    const double opacity = appearance.scheme() == ColorScheme::Dark ? kDarkOpacity : kLightOpacity;
    m_picture =
        dropShadow(menu.size(), cornerRadius, kDeviation, faded(Qt::black, opacity), window->devicePixelRatioF());
    const double reach = dropShadowReach(kDeviation);
    const QPointF corner = window->mapFromGlobal(menu.pos()) + QPointF(-reach, kOffset - reach);
    setGeometry(QRectF(corner, m_picture.deviceIndependentSize()).toAlignedRect() & window->rect());
    m_origin = corner - pos();
    connect(&menu, &QMenu::aboutToHide, this, [this] {
        hide();
        deleteLater();
    });
    raise();
    show();
}

void MenuShadow::paintEvent(QPaintEvent *)
{
    QPainter(this).drawPixmap(m_origin, m_picture);
}

} // namespace ostrelle
