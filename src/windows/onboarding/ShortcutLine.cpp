#include "windows/onboarding/ShortcutLine.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/TabularText.h"
#include "windows/WindowColors.h"
#include "windows/controls/KeySigns.h"
#include "windows/onboarding/OnboardingColors.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kHeight = 24;
constexpr double kLeastWidth = 44;
constexpr double kCapPadding = 10;
constexpr double kRadius = 7;
constexpr double kBottomEdge = 1.5;
constexpr double kOutline = 0.75;
constexpr double kFontSize = 12;

} // namespace

ShortcutLine::ShortcutLine(const ControlContext &context, const QString &label, QWidget *parent)
    : LabelledRow(context, label, nullptr, parent)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(label);
    showKeys({});
}

void ShortcutLine::showKeys(const QString &keys)
{
    m_keys = keys;
    setAccessibleDescription(keys.isEmpty() ? QStringLiteral("Not set") : keys);
    update();
}

void ShortcutLine::paintEvent(QPaintEvent *event)
{
    LabelledRow::paintEvent(event);
    const WindowColors &colors = WindowColors::of(appearance());
    const OnboardingColors &own = OnboardingColors::of(appearance());
    const QFont font = Theme::interfaceFont(kFontSize, QFont::Medium);
    const QString text = accessibleDescription();
    const double advance = tabularAdvance(font, text);
    const double width = std::max(kLeastWidth, advance + 2 * kCapPadding);
    const QRectF cap(this->width() - kPadding - width, (height() - kHeight) / 2, width, kHeight);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(cap, kRadius, kRadius);
    painter.fillPath(shape, own.key);
    painter.fillPath(shape.subtracted(shape.translated(0, -kBottomEdge)), own.keyBottom);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(own.keyOutline, kOutline));
    const double inset = kOutline / 2;
    painter.drawRoundedRect(cap.adjusted(inset, inset, -inset, -inset), kRadius - inset, kRadius - inset);

    painter.setFont(font);
    painter.setPen(m_keys.isEmpty() ? colors.text2 : colors.text1);
    paintKeySigns(painter, QRectF(cap.x() + (width - advance) / 2, cap.y(), advance, kHeight - kBottomEdge), text);
}

} // namespace ostrelle
