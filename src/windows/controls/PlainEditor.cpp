#include "windows/controls/PlainEditor.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/NotchMenu.h"
#include "platform/Popups.h"
#include "windows/WindowColors.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace ostrelle {
namespace {

constexpr int kHeight = 92;
constexpr QMargins kPadding(12, 9, 12, 9);
constexpr double kFontSize = 11.5;
constexpr double kLineHeight = 17;
constexpr double kCaretWidth = 1.5;

} // namespace

PlainEditor::PlainEditor(const ControlContext &context, ClipboardPort &pasteboard, Popups &popups, QWidget *parent)
    : QTextEdit(parent)
    , m_context(context)
    , m_exchange(pasteboard, *this)
    , m_popups(popups)
{
    setFixedHeight(kHeight);
    setFrameShape(QFrame::NoFrame);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setLineWrapMode(QTextEdit::WidgetWidth);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(kPadding);
    // Its own caret would have the colour of the text.
    setCursorWidth(0);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setFont(Theme::monospacedFont(kFontSize));
    setLines();
    connect(this, &QTextEdit::textChanged, this, [this] {
        if (!m_isShowing)
            Q_EMIT edited(toPlainText());
    });
    connect(this, &QTextEdit::cursorPositionChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&context.appearance, &NotchAppearance::changed, this, &PlainEditor::applyLooks);
    applyLooks();
}

PlainEditor::~PlainEditor() = default;

void PlainEditor::applyLooks()
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    QPalette look = palette();
    look.setColor(QPalette::Base, Qt::transparent);
    look.setColor(QPalette::Text, colors.text1);
    look.setColor(QPalette::Highlight, m_context.appearance.palette().textSelection);
    look.setColor(QPalette::HighlightedText, colors.text1);
    setPalette(look);
    update();
}

void PlainEditor::showText(const QString &text)
{
    if (text == toPlainText())
        return;
    m_isShowing = true;
    setPlainText(text);
    setLines();
    m_isShowing = false;
}

/// New lines take the height of the one that they were broken from.
void PlainEditor::setLines()
{
    QTextBlockFormat format;
    format.setLineHeight(kLineHeight, QTextBlockFormat::FixedHeight);
    QTextCursor whole(document());
    whole.select(QTextCursor::Document);
    whole.mergeBlockFormat(format);
    document()->clearUndoRedoStacks();
}

void PlainEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        event->ignore();
    else
        QTextEdit::keyPressEvent(event);
}

void PlainEditor::contextMenuEvent(QContextMenuEvent *event)
{
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    const bool hasSelection = textCursor().hasSelection();
    m_menu->addEntry(QStringLiteral("Undo"), this, [this] { undo(); });
    m_menu->actions().constLast()->setEnabled(document()->isUndoAvailable());
    m_menu->addSeparator();
    m_menu->addEntry(QStringLiteral("Cut"), this, [this] { m_exchange.cut(); });
    m_menu->actions().constLast()->setEnabled(hasSelection);
    m_menu->addEntry(QStringLiteral("Copy"), this, [this] { m_exchange.copy(); });
    m_menu->actions().constLast()->setEnabled(hasSelection);
    m_menu->addEntry(QStringLiteral("Paste"), this, [this] { m_exchange.paste(); });
    m_menu->addSeparator();
    m_menu->addEntry(QStringLiteral("Select All"), this, [this] { selectAll(); });
    m_popups.openMenu(*m_menu, *this, event->pos());
}

void PlainEditor::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    parentWidget()->update();
    viewport()->update();
}

void PlainEditor::focusOutEvent(QFocusEvent *event)
{
    QTextEdit::focusOutEvent(event);
    parentWidget()->update();
    viewport()->update();
}

void PlainEditor::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (!hasFocus() || textCursor().hasSelection())
        return;
    const QRectF cursor(cursorRect());
    QPainter painter(viewport());
    painter.fillRect(QRectF(cursor.x(), cursor.y(), kCaretWidth, kLineHeight), Theme::kAccentVivid);
}

} // namespace ostrelle
