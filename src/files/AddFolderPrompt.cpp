#include "files/AddFolderPrompt.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/FilledButton.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kPromptSymbolSize = 19;
constexpr int kSymbolBox = 24;
constexpr int kSymbolGap = 9;
constexpr int kMessageLine = 15;
constexpr int kButtonGap = 12;

} // namespace

AddFolderPrompt::AddFolderPrompt(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_button(makeChild<FilledButton>(this, context, QStringLiteral("Choose Folder…")))
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(QStringLiteral("Add a project folder"));
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

int AddFolderPrompt::top() const
{
    const int content = kSymbolBox + kSymbolGap + kMessageLine + kButtonGap + m_button.sizeHint().height();
    return (height() - content) / 2;
}

void AddFolderPrompt::resizeEvent(QResizeEvent *)
{
    const QSize button = m_button.sizeHint();
    const int y = top() + kSymbolBox + kSymbolGap + kMessageLine + kButtonGap;
    m_button.setGeometry(QRect(QPoint((width() - button.width()) / 2, y), button));
}

void AddFolderPrompt::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGlyph(painter, u"folder.badge.plus", QRectF(0, top(), width(), kSymbolBox), kPromptSymbolSize,
               GlyphWeight::Light, palette.text3);
    painter.setFont(Theme::font(FontRole::Caption));
    painter.setPen(palette.text2);
    painter.drawText(QRectF(0, top() + kSymbolBox + kSymbolGap, width(), kMessageLine), Qt::AlignCenter,
                     accessibleName());
}

} // namespace ostrelle
