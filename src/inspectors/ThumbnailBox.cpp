#include "inspectors/ThumbnailBox.h"

#include "files/PathToolTip.h"
#include "files/RoundedPicture.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "records/PathText.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kBoxRadius = 12;
constexpr double kPictureRadius = 7;
constexpr double kPlaceholderSize = 32;
constexpr double kArrivalFade = 0.16;

} // namespace

ThumbnailBox::ThumbnailBox(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_arrival(context, 1, [this] { update(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    setFixedSize(kSide, kSide);
    setAccessibleRole(*this, QAccessible::Graphic);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void ThumbnailBox::setPicture(const QString &path, const QImage &picture, int longerSide)
{
    setAccessibleName(lastPathComponent(path).toString());
    setToolTip(pathToolTip(path));
    if (picture == m_shown.picture)
        return;
    m_previous = std::exchange(m_shown, {picture, longerSide});
    m_arrival.jumpTo(0);
    m_arrival.fadeTo(1, Motion::fade(kArrivalFade));
    update();
}

void ThumbnailBox::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const QRectF box(rect());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.tileTint);
    painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
    paintPicture(painter, m_previous, 1 - m_arrival.value());
    paintPicture(painter, m_shown, m_arrival.value());
}

void ThumbnailBox::paintPicture(QPainter &painter, const Shown &shown, double opacity) const
{
    if (opacity <= 0)
        return;
    const QRectF box(rect());
    if (shown.picture.isNull()) {
        paintGlyph(painter, u"photo", box, kPlaceholderSize, GlyphWeight::Light,
                   faded(m_context.appearance.palette().text3, opacity));
        return;
    }
    const double longer = std::min(shown.longerSide, kPictureSide);
    const QSizeF size =
        QSizeF(shown.picture.size()).scaled(longer, longer, Qt::KeepAspectRatio).expandedTo(QSizeF(1, 1));
    const QRectF place(box.center() - QPointF(size.width(), size.height()) / 2, size);
    painter.setOpacity(opacity);
    paintRounded(painter, place, std::min(kPictureRadius, std::min(size.width(), size.height()) / 4), shown.picture);
    painter.setOpacity(1);
}

} // namespace ostrelle
