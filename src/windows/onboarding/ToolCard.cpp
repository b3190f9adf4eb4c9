#include "windows/onboarding/ToolCard.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/WindowColors.h"
#include "windows/controls/SwitchButton.h"
#include "windows/controls/WrappedText.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/StepChange.h"

#include <QPainter>

#include <array>

namespace ostrelle {
namespace {

constexpr QSize kSize(onboarding::kPage.width() - 2 * onboarding::kMargin, 211);
constexpr double kBorder = 1.25;
constexpr double kPadding = 22;
constexpr double kTileSide = 46;
constexpr double kTileRadius = 12;
constexpr double kSymbolSize = 20;
constexpr double kTextX = kPadding + kTileSide + 14;
constexpr double kTitleTop = 26.5;
constexpr double kTitleLine = 18;
constexpr double kBlurbTop = 47;
constexpr double kBlurbLine = 16;
constexpr double kLineTop = 86;
constexpr double kPointsTop = 101;
constexpr double kPointLine = 31;
constexpr double kDot = 5;
/// The spring's response in the standard intensity, seconds.
constexpr double kResponse = 0.30;
/// How far words travel within the card.
constexpr double kTravel = 10;

/// The colour of the dot before a point: the theme's first ones, but for the one theme with two that look alike.
QColor dotColor(NotchTheme theme, ColorScheme scheme, std::size_t point)
{
    constexpr std::array<std::size_t, 3> kDistinct = {0, 2, 3};
    return themeColors(theme, scheme)[theme == NotchTheme::Spectrum ? kDistinct.at(point) : point];
}

} // namespace

ToolCard::ToolCard(const ControlContext &context, KestroModule tool, QWidget *parent)
    : PageCard(context, parent)
    , m_tool(tool)
    , m_leaving(tool)
    , m_switch(makeChild<SwitchButton>(this, context, SwitchButton::Size::Small))
    , m_change(context, 1, [this] { update(); })
{
    setFixedSize(kSize);
    setAccessibleRole(*this, QAccessible::Grouping);
    m_switch.move(static_cast<int>(kSize.width() - kPadding) - m_switch.width(),
                  static_cast<int>(kPadding + (kTileSide - m_switch.height()) / 2));
    describe();
}

void ToolCard::showTool(KestroModule tool, Direction direction)
{
    if (tool == m_tool)
        return;
    m_leaving = m_tool;
    m_tool = tool;
    m_direction = direction;
    describe();
    m_change.jumpTo(isVisible() ? 0 : 1);
    m_change.animateTo(1, Motion::damped(kResponse));
    update();
}

void ToolCard::describe()
{
    const auto points = highlights(m_tool);
    setAccessibleName(title(m_tool));
    setAccessibleDescription(blurb(m_tool) + u' ' + points[0] + QStringLiteral(". ") + points[1] +
                             QStringLiteral(". ") + points[2] + u'.');
    m_switch.setAccessibleName(title(m_tool));
}

void ToolCard::showState(bool isShown)
{
    m_switch.showState(isShown);
    const QString state = isShown ? QStringLiteral("Shown in the notch") : QStringLiteral("Hidden from the notch");
    m_switch.setToolTip(state);
    m_switch.setAccessibleDescription(state);
}

void ToolCard::paintTool(QPainter &painter, KestroModule tool, double x, double opacity) const
{
    if (opacity <= 0)
        return;
    const WindowColors &colors = WindowColors::of(appearance());
    painter.save();
    painter.translate(x, 0);
    painter.setOpacity(opacity);
    paintGlyph(painter, symbol(tool), QRectF(kPadding, kPadding, kTileSide, kTileSide), kSymbolSize,
               GlyphWeight::Medium, colors.text1);
    paintLine(painter, title(tool), Theme::interfaceFont(14, QFont::DemiBold), kTitleLine, {kTextX, kTitleTop},
              colors.text1);
    paintLine(painter, blurb(tool), Theme::font(FontRole::Body), kBlurbLine, {kTextX, kBlurbTop}, colors.text2);
    double y = kPointsTop;
    std::size_t index = 0;
    for (const QString &point : highlights(tool)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(dotColor(appearance().theme(), appearance().scheme(), index++));
        painter.drawEllipse(QPointF(kPadding + kTileSide / 2, y + kPointLine / 2), kDot / 2, kDot / 2);
        paintLine(painter, point, Theme::font(FontRole::Body), kPointLine, {kTextX, y}, colors.text1);
        y += kPointLine;
    }
    painter.restore();
}

void ToolCard::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
    const QRectF box = QRectF(rect()).adjusted(kBorder / 2, kBorder / 2, -kBorder / 2, -kBorder / 2);
    QLinearGradient border(box.topLeft(), box.bottomRight());
    border.setStops(themeStops(appearance().theme(), appearance().scheme()));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(border, kBorder));
    painter.drawRoundedRect(box, kRadius - kBorder / 2, kRadius - kBorder / 2);

    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.chosen);
    painter.drawRoundedRect(QRectF(kPadding, kPadding, kTileSide, kTileSide), kTileRadius, kTileRadius);
    painter.fillRect(QRectF(kTextX, kLineTop, width() - kTextX - kPadding, 0.75), colors.hairline);

    const StepChange change{.progress = m_change.value(),
                            .travel = appearance().reducesMotion() ? 0 : kTravel,
                            .isBack = m_direction == Direction::Back};
    paintTool(painter, m_leaving, change.leavingX(), change.leavingOpacity());
    paintTool(painter, m_tool, change.enteringX(), change.enteringOpacity());
}

} // namespace ostrelle
