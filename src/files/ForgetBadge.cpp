#include "files/ForgetBadge.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kMarkSize = 11;
constexpr double kMarkPressedOpacity = 0.75;
/// On the dark disc the light appearance's own colour would not be seen.
constexpr double kMarkInLight = 0.8;

} // namespace

ForgetBadge::ForgetBadge(const ControlContext &context, QWidget *parent)
    : NotchButton(context, parent)
    , m_shown(context, 0, [this] {
        setVisible(m_shown.value() > 0 || m_shown.target() > 0);
        update();
    })
{
    setFixedSize(kDiameter, kDiameter);
    setHelp(QStringLiteral("Forget this file"));
    setFocusPolicy(Qt::TabFocus);
    hide();
}

void ForgetBadge::setShown(bool shown)
{
    // While it fades out it lets the pointer through.
    setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
    if (shown)
        show();
    m_shown.animateTo(shown ? 1 : 0, Motion::hover());
    refreshHover();
}

void ForgetBadge::paintEvent(QPaintEvent *)
{
    const bool isDark = appearance().scheme() == ColorScheme::Dark;
    const QColor rest = isDark ? appearance().palette().text2 : faded(Qt::white, kMarkInLight);
    const double opacity = m_shown.value() * presence() * (1 + (kMarkPressedOpacity - 1) * pressAmount());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(Theme::kHardware, opacity));
    painter.drawEllipse(shape());
    paintGlyph(painter, u"xmark.circle.fill", shape(), kMarkSize, GlyphWeight::Regular,
               faded(mixed(rest, Qt::white, hoverAmount()), opacity));
}

} // namespace ostrelle
