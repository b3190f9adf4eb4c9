#include "windows/onboarding/ToolPicker.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/WindowColors.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr QSize kButton(44, 36);
constexpr int kGap = 6;
constexpr double kRadius = 10;
constexpr double kSymbolSize = 13;
constexpr double kPressedScale = 0.97;

} // namespace

class ToolPicker::Button : public NotchButton
{
public:
    Button(const ControlContext &context, KestroModule module, QWidget *parent)
        : NotchButton(context, parent)
        , m_module(module)
        , m_choice(context, 0, [this] { update(); })
    {
        setFixedSize(kButton);
        setCheckable(true);
        setAutoExclusive(true);
        setFocusPolicy(Qt::TabFocus);
        setAccessibleRole(*this, QAccessible::RadioButton);
        setHelp(title(module));
        connect(this, &QAbstractButton::toggled, this, [this](bool isChosen) {
            if (isVisible())
                m_choice.animateTo(isChosen ? 1 : 0, Motion::hover());
            else
                m_choice.jumpTo(isChosen ? 1 : 0);
        });
        connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    }

    KestroModule module() const { return m_module; }

protected:
    double cornerRadius() const override { return kRadius; }
    void paintEvent(QPaintEvent *) override
    {
        const WindowColors &colors = WindowColors::of(appearance());
        const double choice = std::clamp(m_choice.value(), 0.0, 1.0);
        const double hover = std::clamp(hoverAmount(), 0.0, 1.0);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(shape().center());
        painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
        painter.translate(-shape().center());
        painter.setPen(Qt::NoPen);
        painter.setBrush(mixed(faded(colors.hover, hover), colors.chosen, choice));
        painter.drawRoundedRect(shape(), kRadius, kRadius);
        paintGlyph(painter, symbol(m_module), shape(), kSymbolSize, GlyphWeight::Medium,
                   mixed(colors.text2, colors.text1, std::max(choice, hover)));
    }

private:
    KestroModule m_module;
    AnimatedNumber m_choice; ///< 1 for the chosen one
};

ToolPicker::ToolPicker(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Tools"));
    int x = 0;
    for (const KestroModule module : kAllModules) {
        auto &button = makeChild<Button>(this, context, module);
        button.move(x, 0);
        x += kButton.width() + kGap;
        connect(&button, &QAbstractButton::clicked, this, [this, module] { Q_EMIT picked(module); });
        m_buttons.push_back(&button);
    }
    setFixedSize(x - kGap, kButton.height());
}

void ToolPicker::showTool(KestroModule module)
{
    for (Button *button : m_buttons) {
        if (button->module() == module)
            button->setChecked(true);
    }
}

} // namespace ostrelle
