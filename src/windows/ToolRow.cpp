#include "windows/ToolRow.h"

#include "foundation/MakeChild.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/SettingsGroup.h"
#include "windows/WindowColors.h"
#include "windows/controls/SwitchButton.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kTileX = 12;
constexpr double kTileSide = 28;
constexpr double kTileRadius = 8;
constexpr double kSymbolSize = 13;
constexpr double kTextX = 51;
constexpr double kTitleLine = 16;
constexpr double kSubtitleGap = 2;
constexpr double kSubtitleLine = 14;
constexpr double kHandleSize = 10.5;
constexpr double kHandleBox = 13;
constexpr double kPadding = 12;
constexpr double kHandleGap = 16;
constexpr double kHiddenDark = 0.55;
constexpr double kHiddenLight = 0.74;
constexpr double kSlotInset = 4;
constexpr double kSlotRadius = 9;
constexpr double kSlotFill = 0.09;
constexpr double kStateResponse = 0.22;

QString stateText(bool isShown)
{
    return isShown ? QStringLiteral("Shown in the notch") : QStringLiteral("Hidden from the notch");
}

} // namespace

ToolRow::ToolRow(const ControlContext &context, KestroModule module, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_module(module)
    , m_switch(makeChild<SwitchButton>(this, context, SwitchButton::Size::Ordinary))
    , m_hover(context, 0, [this] { update(); })
    , m_presence(context, 1, [this] { applyPresence(); })
{
    setFixedHeight(kHeight);
    m_switch.setAccessibleName(title(module));
    connect(&m_switch, &SwitchButton::switched, this, &ToolRow::switched);
    connect(&context.appearance, &NotchAppearance::changed, this, &ToolRow::applyPresence);
    showState(true);
}

void ToolRow::showState(bool isShown)
{
    m_isShown = isShown;
    m_switch.showState(isShown);
    m_switch.setAccessibleDescription(stateText(isShown));
    if (isVisible())
        m_presence.animateTo(isShown ? 1 : 0, Motion::damped(kStateResponse));
    else
        m_presence.jumpTo(isShown ? 1 : 0);
    applyPresence();
}

double ToolRow::strength() const
{
    const double hidden = m_context.appearance.scheme() == ColorScheme::Dark ? kHiddenDark : kHiddenLight;
    return hidden + (1 - hidden) * std::clamp(m_presence.value(), 0.0, 1.0);
}

void ToolRow::applyPresence()
{
    m_switch.setPresence(strength());
    update();
}

QWidget &ToolRow::control() const
{
    return m_switch;
}

void ToolRow::setLifted(bool isLifted)
{
    m_isLifted = isLifted;
    m_switch.setVisible(!isLifted);
    update();
}

QPixmap ToolRow::picture()
{
    QPixmap picture(size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    m_isPictured = true;
    render(&picture, {}, {}, QWidget::DrawChildren);
    m_isPictured = false;
    return picture;
}

void ToolRow::enterEvent(QEnterEvent *)
{
    m_hover.animateTo(1, Motion::hover());
}

void ToolRow::leaveEvent(QEvent *)
{
    m_hover.animateTo(0, Motion::hover());
}

void ToolRow::resizeEvent(QResizeEvent *)
{
    const double x = width() - kPadding - kHandleBox - kHandleGap - m_switch.width();
    m_switch.move(QPointF(x, (height() - m_switch.height()) / 2.0).toPoint());
}

void ToolRow::paintContent(QPainter &painter) const
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    const double strength = this->strength();
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(colors.hover, strength));
    const QRectF tile(kTileX, (height() - kTileSide) / 2, kTileSide, kTileSide);
    painter.drawRoundedRect(tile, kTileRadius, kTileRadius);
    paintGlyph(painter, symbol(m_module), tile, kSymbolSize, GlyphWeight::Medium, faded(colors.text1, strength));
    const double y = (height() - kTitleLine - kSubtitleGap - kSubtitleLine) / 2;
    paintLine(painter, title(m_module), Theme::font(FontRole::Body), kTitleLine, {kTextX, y},
              faded(colors.text1, strength));
    paintLine(painter, stateText(m_isShown), Theme::font(FontRole::Caption), kSubtitleLine,
              {kTextX, y + kTitleLine + kSubtitleGap}, faded(colors.text2, strength));
    paintGlyph(painter, u"line.3.horizontal", QRectF(width() - kPadding - kHandleBox, 0, kHandleBox, height()),
               kHandleSize, GlyphWeight::Semibold,
               faded(mixed(colors.text3, colors.text1, std::clamp(m_hover.value(), 0.0, 1.0)), strength));
}

void ToolRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isPictured) {
        paintContent(painter);
        return;
    }
    SettingsGroup::paintDivider(painter, *this, m_context.appearance, kTextX);
    if (m_isLifted) {
        painter.setBrush(faded(Theme::kAccentVivid, kSlotFill));
        painter.setPen(QPen(m_context.appearance.palette().accentEdge, 1));
        const double inset = kSlotInset + 0.5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kSlotRadius, kSlotRadius);
        return;
    }
    painter.fillPath(SettingsGroup::rowShape(*this), faded(colors.hover, std::clamp(m_hover.value(), 0.0, 1.0)));
    paintContent(painter);
}

} // namespace ostrelle
