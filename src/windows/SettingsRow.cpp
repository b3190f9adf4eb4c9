#include "windows/SettingsRow.h"

#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "windows/SettingsGroup.h"
#include "windows/WindowColors.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kPadding = 12;
constexpr double kTitleLine = 16;
constexpr double kSubtitleGap = 2;
constexpr double kSubtitleLine = 14;
constexpr double kControlGap = 14;
constexpr double kSymbolSize = 14;
constexpr double kSymbolBox = 18;
constexpr double kSymbolGap = 10;

} // namespace

SettingsRow::SettingsRow(const ControlContext &context, Content content, QWidget *control, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_content(std::move(content))
    , m_control(control)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    if (m_control == nullptr) {
        setAccessibleRole(*this, QAccessible::StaticText);
        setAccessibleName(m_content.title);
        setAccessibleDescription(m_content.subtitle);
        return;
    }
    m_control->setParent(this);
    m_control->setAccessibleName(m_content.title);
    m_control->setAccessibleDescription(m_content.subtitle);
}

double SettingsRow::textX() const
{
    return m_content.symbol.isEmpty() ? kPadding : kPadding + kSymbolBox + kSymbolGap;
}

WrappedText SettingsRow::subtitle(int width) const
{
    const double control =
        m_control != nullptr ? m_control->sizeHint().expandedTo(m_control->minimumSize()).width() + kControlGap : 0;
    return WrappedText(m_content.subtitle, {.font = Theme::font(FontRole::Caption), .lineHeight = kSubtitleLine},
                       std::max(1.0, width - textX() - kPadding - control));
}

int SettingsRow::heightForWidth(int width) const
{
    const double subtitle = this->subtitle(width).height();
    const double text = kTitleLine + (subtitle > 0 ? kSubtitleGap + subtitle : 0);
    const double control =
        m_control != nullptr ? m_control->sizeHint().expandedTo(m_control->minimumSize()).height() : 0;
    return static_cast<int>(std::ceil(2 * kPadding + std::max(text, control)));
}

bool SettingsRow::event(QEvent *event)
{
    // The control has another size now.
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        arrange();
    }
    return QWidget::event(event);
}

void SettingsRow::arrange()
{
    if (m_control == nullptr)
        return;
    const QSize size = m_control->sizeHint().expandedTo(m_control->minimumSize());
    m_control->setGeometry(
        QRect(QPoint(static_cast<int>(width() - kPadding - size.width()), (height() - size.height()) / 2), size));
    update();
}

void SettingsRow::resizeEvent(QResizeEvent *)
{
    arrange();
}

void SettingsRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    SettingsGroup::paintDivider(painter, *this, m_appearance, kPadding);
    if (!m_content.symbol.isEmpty())
        paintGlyph(painter, m_content.symbol, QRectF(kPadding, 0, kSymbolBox, height()), kSymbolSize,
                   GlyphWeight::Medium, colors.accentInk);
    const WrappedText below = subtitle(width());
    const double text = kTitleLine + (below.lineCount() > 0 ? kSubtitleGap + below.height() : 0);
    const double y = (height() - text) / 2;
    paintLine(painter, m_content.title, Theme::font(FontRole::Body), kTitleLine, {textX(), y}, colors.text1);
    below.paint(painter, {textX(), y + kTitleLine + kSubtitleGap}, colors.text2);
}

} // namespace ostrelle
