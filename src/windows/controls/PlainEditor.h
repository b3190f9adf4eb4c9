#pragma once

#include "notch/controls/ControlContext.h"
#include "platform/FieldExchange.h"

#include <QTextEdit>

#include <memory>

namespace ostrelle {

class ClipboardPort;
class NotchMenu;
class Popups;

/// Several lines of plain text in a monospaced font, in a container of their own. Cutting, copying and pasting go
/// through the program's own way to the clipboard, which never waits for another program.
class PlainEditor : public QTextEdit
{
    Q_OBJECT
public:
    PlainEditor(const ControlContext &context, ClipboardPort &pasteboard, Popups &popups, QWidget *parent);
    ~PlainEditor() override;

    /// Shows a text that was not typed: nothing is emitted, and there is nothing to undo.
    void showText(const QString &text);

Q_SIGNALS:
    void edited(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyLooks();
    void setLines();

    ControlContext m_context;
    FieldExchange m_exchange;
    Popups &m_popups;
    std::unique_ptr<NotchMenu> m_menu; ///< the latest one
    bool m_isShowing = false;
};

} // namespace ostrelle
