#include "platform/FieldExchange.h"

#include "platform/ClipboardPort.h"
#include "platform/ClipboardText.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextEdit>

#include <algorithm>

namespace ostrelle {
namespace {

QString inOneLine(QString text)
{
    const auto isBreak = [](QChar character) {
        return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    };
    std::replace_if(text.begin(), text.end(), isBreak, QChar(u' '));
    return text;
}

/// With the selection ended there is nothing that a press could begin to drag.
void endSelectionAt(QTextEdit &editor, const QPoint &place)
{
    const QTextCursor selected = editor.textCursor();
    const QTextCursor pressed = editor.cursorForPosition(place);
    if (selected.hasSelection() && pressed.position() >= selected.selectionStart() &&
        pressed.position() <= selected.selectionEnd())
        editor.setTextCursor(pressed);
}

} // namespace

FieldExchange::FieldExchange(ClipboardPort &port, QLineEdit &field, QObject *parent)
    : QObject(parent)
    , m_port(port)
    , m_selection([&field] { return field.selectedText(); })
    , m_insert([&field](const QString &text) {
        if (!field.isReadOnly())
            field.insert(inOneLine(text));
    })
    , m_preparePress([](const QPoint &) {})
{
    field.setDragEnabled(false);
    field.setAcceptDrops(false);
    field.installEventFilter(this);
}

FieldExchange::FieldExchange(ClipboardPort &port, QTextEdit &editor, QObject *parent)
    : QObject(parent)
    , m_port(port)
    , m_selection([&editor] { return editor.textCursor().selection().toPlainText(); })
    , m_insert([&editor](const QString &text) {
        if (!editor.isReadOnly())
            editor.insertPlainText(text);
    })
    , m_preparePress([&editor](const QPoint &place) { endSelectionAt(editor, place); })
{
    editor.viewport()->setAcceptDrops(false);
    editor.installEventFilter(this);
    editor.viewport()->installEventFilter(this);
}

void FieldExchange::cut()
{
    copy();
    if (!m_selection().isEmpty())
        m_insert(QString());
}

void FieldExchange::copy()
{
    if (const QString selection = m_selection(); !selection.isEmpty())
        m_port.write(selection);
}

void FieldExchange::paste()
{
    readClipboardText(m_port, this, m_insert);
}

bool FieldExchange::takeKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Copy))
        copy();
    else if (event.matches(QKeySequence::Cut))
        cut();
    else if (event.matches(QKeySequence::Paste))
        paste();
    else
        return false;
    return true;
}

bool FieldExchange::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return takeKey(*static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonPress:
        if (const auto &press = *static_cast<QMouseEvent *>(event);
            press.button() == Qt::LeftButton && press.modifiers() == Qt::NoModifier)
            m_preparePress(press.position().toPoint());
        return false;
    case QEvent::MouseButtonRelease:
        return static_cast<QMouseEvent *>(event)->button() == Qt::MiddleButton;
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace ostrelle
