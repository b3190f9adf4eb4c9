#pragma once

#include "notch/controls/ControlContext.h"

#include <QPixmap>
#include <QPointer>
#include <QWidget>

namespace ostrelle {

class PushButton;

/// Asks over a whole window whether something may be taken away for good. While it is there nothing else of the window
/// can be used. Return confirms, Escape cancels; it deletes itself when it was answered.
class ConfirmationAlert : public QWidget
{
    Q_OBJECT
public:
    struct Content
    {
        QString message;
        QString text;
        QString confirm;
    };

    /// Covers `window` and takes its focus, which goes back to who had it.
    ConfirmationAlert(const ControlContext &context, Content content, QWidget *window);

Q_SIGNALS:
    void confirmed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void finish();
    QRectF box() const;

    ControlContext m_context;
    Content m_content;
    PushButton &m_confirm;
    PushButton &m_cancel;
    QPointer<QWidget> m_before; ///< had the focus
    QPixmap m_shadow;           ///< null until it is painted
};

} // namespace ostrelle
