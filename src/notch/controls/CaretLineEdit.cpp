#include "notch/controls/CaretLineEdit.h"

#include "notch/NotchAppearance.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kCaretWidth = 1.5;
constexpr double kCaretGap = 0.5; ///< to the character that it stands before
constexpr double kCaretInset = 1;

} // namespace

int CaretLineEdit::NoCaretStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                                             const QWidget *widget) const
{
    return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
}

CaretLineEdit::CaretLineEdit(const NotchAppearance &appearance, ClipboardPort &clipboard, QWidget *parent)
    : QLineEdit(parent)
    , m_appearance(appearance)
    , m_exchange(clipboard, *this)
{
    setStyle(&m_style);
    setFrame(false);
    setTextMargins(0, 0, 0, 0);
    setAttribute(Qt::WA_NoSystemBackground);
    // The platform's menu of a text field would open beside the panel's own way of opening menus.
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(&appearance, &NotchAppearance::changed, this, &CaretLineEdit::applyPalette);
    applyPalette();
}

CaretLineEdit::~CaretLineEdit()
{
    // The style is a member and gone before the base class is.
    setStyle(nullptr);
}

void CaretLineEdit::applyPalette()
{
    const Theme::Palette &colors = m_appearance.palette();
    QPalette look = palette();
    look.setColor(QPalette::Base, Qt::transparent);
    look.setColor(QPalette::Text, colors.text1);
    look.setColor(QPalette::PlaceholderText, colors.text3);
    look.setColor(QPalette::Highlight, colors.textSelection);
    look.setColor(QPalette::HighlightedText, colors.text1);
    setPalette(look);
}

void CaretLineEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!hasFocus() || isReadOnly() || hasSelectedText())
        return;
    const QRectF cursor(cursorRect());
    QPainter painter(this);
    const double x = cursor.center().x() - kCaretWidth - kCaretGap;
    painter.fillRect(QRectF(x, cursor.top() + kCaretInset, kCaretWidth, cursor.height() - 2 * kCaretInset),
                     m_appearance.palette().accent);
}

} // namespace ostrelle
