#include "windows/LiftedRow.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/WindowColors.h"
#include "windows/controls/DropShadow.h"

#include <QPainter>

#include <utility>

namespace ostrelle {
namespace {

constexpr double kRadius = 11;
constexpr double kShadowOffset = 14;
constexpr double kShadowDeviation = 15;
constexpr double kShadowDark = 0.5;
constexpr double kShadowLight = 0.22;
constexpr int kReach = 60; ///< of the shadow, offset included
static_assert(kReach > dropShadowReach(kShadowDeviation) + kShadowOffset);
constexpr double kSettleResponse = 0.22;

} // namespace

LiftedRow::LiftedRow(const ControlContext &context, const QPixmap &picture, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_picture(picture)
    , m_progress(context, 0, [this] {
        place(m_start + (m_end - m_start) * m_progress.value());
        if (!m_progress.isMoving() && m_done)
            std::exchange(m_done, {})();
    })
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(m_picture.deviceIndependentSize().toSize() + QSize(2 * kReach, 2 * kReach));
}

void LiftedRow::place(const QPointF &corner)
{
    m_corner = corner;
    move(corner.toPoint() - QPoint(kReach, kReach));
}

void LiftedRow::follow(const QPointF &corner)
{
    place(corner);
}

void LiftedRow::settle(const QPointF &corner, std::function<void()> done)
{
    m_start = m_corner;
    m_end = corner;
    m_done = std::move(done);
    m_progress.animateTo(1, Motion::damped(kSettleResponse));
}

void LiftedRow::paintEvent(QPaintEvent *)
{
    const NotchAppearance &appearance = m_context.appearance;
    const QRectF box(QPointF(kReach, kReach), m_picture.deviceIndependentSize());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_shadow.isNull()) {
        const double opacity = appearance.scheme() == ColorScheme::Dark ? kShadowDark : kShadowLight;
        m_shadow = dropShadow(box.size(), kRadius, kShadowDeviation, faded(Qt::black, opacity), devicePixelRatioF());
    }
    const double reach = dropShadowReach(kShadowDeviation);
    painter.drawPixmap(box.topLeft() + QPointF(-reach, kShadowOffset - reach), m_shadow);
    paintRow(painter, box.topLeft());
}

void LiftedRow::paintRow(QPainter &painter, const QPointF &corner) const
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    const QRectF box(corner, m_picture.deviceIndependentSize());
    painter.setPen(QPen(colors.menuOutline, 1));
    painter.setBrush(colors.lifted);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    painter.drawPixmap(corner, m_picture);
}

QPixmap LiftedRow::picture() const
{
    QPixmap picture(m_picture.size());
    picture.setDevicePixelRatio(m_picture.devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRow(painter, {});
    return picture;
}

} // namespace ostrelle
