#include "files/RenameField.h"

#include "notch/Theme.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include <utility>

namespace ostrelle {
namespace {

/// What the toolkit leaves free on each side of the text.
constexpr int kInnerMargin = 2;
constexpr int kExtraHeight = 2;

} // namespace

RenameField::RenameField(const NotchAppearance &appearance, ClipboardPort &clipboard, const QString &placeholder,
                         QWidget *parent)
    : CaretLineEdit(appearance, clipboard, parent)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFont(Theme::font(FontRole::BodyMedium));
    setFocusPolicy(Qt::ClickFocus);
    hide();
}

void RenameField::begin(const QString &name)
{
    m_isRenaming = true;
    window()->installEventFilter(this);
    setText(name);
    selectAll();
    show();
    setFocus(Qt::OtherFocusReason);
}

void RenameField::cancel()
{
    if (std::exchange(m_isRenaming, false))
        end();
}

void RenameField::commit()
{
    if (!std::exchange(m_isRenaming, false))
        return;
    Q_EMIT committed(text());
    end();
}

void RenameField::end()
{
    window()->removeEventFilter(this);
    Q_EMIT ended();
    hide();
}

void RenameField::place(const QRectF &line)
{
    setGeometry(line.toRect().adjusted(-kInnerMargin, -kExtraHeight / 2, kInnerMargin, kExtraHeight / 2));
}

bool RenameField::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window() && event->type() == QEvent::MouseButtonPress)
        commit();
    return CaretLineEdit::eventFilter(watched, event);
}

void RenameField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        commit();
    else if (event->key() == Qt::Key_Escape)
        cancel();
    else
        CaretLineEdit::keyPressEvent(event);
    event->accept();
}

void RenameField::focusOutEvent(QFocusEvent *event)
{
    CaretLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}

} // namespace ostrelle
