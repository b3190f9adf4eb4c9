#include "notch/controls/EmptyStateView.h"

#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kSymbolSize = 19;
constexpr double kSymbolBox = 24;
constexpr double kSymbolGap = 9;
constexpr double kHintGap = 3;
constexpr double kMessageLine = 16;
constexpr double kHintLine = 15;
constexpr double kHiddenScale = 0.97;
constexpr double kPresenceResponse = 0.22;
constexpr int kTextFlags = Qt::AlignCenter | Qt::TextWordWrap;

} // namespace

EmptyStateView::EmptyStateView(const ControlContext &context, Content content, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_content(std::move(content))
    , m_presence(context, 1, [this] {
        if (m_presence.target() == 0 && !m_presence.isMoving())
            hide();
        update();
    })
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::StaticText);
    describe();
}

void EmptyStateView::setContent(const Content &content)
{
    if (content == m_content)
        return;
    m_content = content;
    describe();
    updateGeometry();
    update();
}

void EmptyStateView::describe()
{
    setAccessibleName(m_content.message);
    setAccessibleDescription(m_content.hint);
}

void EmptyStateView::appear()
{
    if (isHidden())
        m_presence.jumpTo(0);
    show();
    m_presence.animateTo(1, Motion::damped(kPresenceResponse));
}

void EmptyStateView::disappear()
{
    if (!isHidden())
        m_presence.animateTo(0, Motion::damped(kPresenceResponse));
}

void EmptyStateView::setOpacity(double opacity)
{
    if (std::exchange(m_opacity, opacity) != opacity)
        update();
}

double EmptyStateView::textHeight(const QString &text, const QFont &font) const
{
    constexpr double kUnlimited = 10000;
    return QFontMetricsF(font).boundingRect(QRectF(0, 0, width(), kUnlimited), kTextFlags, text).height();
}

QSize EmptyStateView::minimumSizeHint() const
{
    const QFontMetricsF message(Theme::font(FontRole::Body));
    const QFontMetricsF hint(Theme::font(FontRole::Caption));
    const double width = std::max(message.horizontalAdvance(m_content.message), hint.horizontalAdvance(m_content.hint));
    const double hintPart = m_content.hint.isEmpty() ? 0 : kHintGap + kHintLine;
    const double height = kSymbolBox + kSymbolGap + kMessageLine + hintPart;
    return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height))};
}

void EmptyStateView::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const QFont messageFont = Theme::font(FontRole::Body);
    const QFont hintFont = Theme::font(FontRole::Caption);
    const double messageHeight = std::max(textHeight(m_content.message, messageFont), kMessageLine);
    const double hintHeight = m_content.hint.isEmpty() ? 0 : std::max(textHeight(m_content.hint, hintFont), kHintLine);
    const double hintGap = m_content.hint.isEmpty() ? 0 : kHintGap;
    const double presence = m_presence.value();
    const double opacity = presence * m_opacity;
    const double scale = m_context.appearance.reducesMotion() ? 1 : kHiddenScale + (1 - kHiddenScale) * presence;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);

    double y = std::round(centre.y() - (kSymbolBox + kSymbolGap + messageHeight + hintGap + hintHeight) / 2);
    paintGlyph(painter, m_content.symbol, QRectF(0, y, width(), kSymbolBox), kSymbolSize, GlyphWeight::Light,
               faded(palette.text3, opacity));
    y += kSymbolBox + kSymbolGap;
    painter.setFont(messageFont);
    painter.setPen(faded(palette.text2, opacity));
    painter.drawText(QRectF(0, y, width(), messageHeight), kTextFlags, m_content.message);
    y += messageHeight + hintGap;
    painter.setFont(hintFont);
    painter.setPen(faded(palette.text3, opacity));
    painter.drawText(QRectF(0, y, width(), hintHeight), kTextFlags, m_content.hint);
}

} // namespace ostrelle
