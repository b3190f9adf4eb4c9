#include "windows/TextRow.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "windows/SettingsGroup.h"
#include "windows/WindowColors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kPadding = 12;
constexpr double kLine = 15;

} // namespace

TextRow::TextRow(const ControlContext &context, const QString &text, Emphasis emphasis, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_emphasis(emphasis)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(text);
}

WrappedText TextRow::broken(int width) const
{
    return WrappedText(accessibleName(), {.font = Theme::font(FontRole::Caption), .lineHeight = kLine},
                       std::max(1.0, width - 2 * kPadding));
}

int TextRow::heightForWidth(int width) const
{
    return static_cast<int>(std::ceil(2 * kPadding + broken(width).height()));
}

void TextRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    SettingsGroup::paintDivider(painter, *this, m_appearance, kPadding);
    broken(width()).paint(painter, {kPadding, kPadding}, m_emphasis == Emphasis::Strong ? colors.text1 : colors.text2);
}

} // namespace ostrelle
