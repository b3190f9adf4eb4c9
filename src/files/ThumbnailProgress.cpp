#include "files/ThumbnailProgress.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kResponse = 0.3;

} // namespace

ThumbnailProgress::ThumbnailProgress(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_presence(context, 0,
                 [this] {
                     if (m_presence.target() == 0 && !m_presence.isMoving())
                         hide();
                     update();
                 })
    , m_done(context, 0, [this] { update(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::ProgressBar);
    hide();
}

void ThumbnailProgress::setProgress(const AssetThumbnails::Progress &progress)
{
    if (progress.outstanding() == 0) {
        m_done.animateTo(1, Motion::damped(kResponse));
        m_presence.animateTo(0, Motion::damped(kResponse));
        return;
    }
    if (isHidden() && progress.outstanding() <= kUnnoticed)
        return;
    if (isHidden() || m_presence.target() == 0)
        m_done.jumpTo(0);
    setAccessibleName(QStringLiteral("Pictures: %1 of %2").arg(progress.done).arg(progress.total));
    show();
    m_presence.animateTo(1, Motion::damped(kResponse));
    m_done.animateTo(static_cast<double>(progress.done) / progress.total, Motion::damped(kResponse));
}

void ThumbnailProgress::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const double radius = kHeight / 2.0;
    const QRectF line(rect());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(palette.hairline, m_presence.value()));
    painter.drawRoundedRect(line, radius, radius);
    painter.setBrush(faded(palette.accentEdge, m_presence.value()));
    painter.drawRoundedRect(QRectF(0, 0, line.width() * m_done.value(), kHeight), radius, radius);
}

} // namespace ostrelle
