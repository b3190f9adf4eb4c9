#pragma once

#include "notch/controls/CaretLineEdit.h"

namespace ostrelle {

/// The field in which a name is changed in place. Return commits, and so does going elsewhere: another focus, or a
/// press beside it that no control took. Escape cancels. No key goes beyond it. Hidden while nothing is renamed.
class RenameField : public CaretLineEdit
{
    Q_OBJECT
public:
    RenameField(const NotchAppearance &appearance, ClipboardPort &clipboard, const QString &placeholder,
                QWidget *parent);

    bool isRenaming() const { return m_isRenaming; }
    /// Shows the field with the name selected, and takes the focus.
    void begin(const QString &name);
    /// Nothing when nothing is renamed.
    void commit();
    void cancel();
    /// So that the text starts at `line`'s edge and stands on its middle.
    void place(const QRectF &line);

Q_SIGNALS:
    void committed(const QString &name);
    /// Committed or cancelled: the field is about to hide, and has the focus perhaps.
    void ended();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void end();

    bool m_isRenaming = false;
};

} // namespace ostrelle
