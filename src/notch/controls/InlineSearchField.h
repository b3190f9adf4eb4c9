#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

class QLineEdit;

namespace ostrelle {

class ClipboardPort;

/// A search field, 24 high: a magnifying glass, the text, and a button that empties it while there is some. Keys that
/// the text does not use go on to the parent.
class InlineSearchField : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 24;

    InlineSearchField(const ControlContext &context, ClipboardPort &clipboard, const QString &placeholder,
                      QWidget *parent);

    QString text() const;
    void setText(const QString &text);
    /// The text field itself: for the focus, and for watching its keys before it uses them.
    QLineEdit &field() { return m_field; }

Q_SIGNALS:
    void textChanged(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class ClearButton;

    ControlContext m_context;
    QLineEdit &m_field;
    ClearButton &m_clear;
    AnimatedNumber m_focus;
};

} // namespace ostrelle
