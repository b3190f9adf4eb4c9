#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QKeyEvent;
class QLineEdit;
class QTextEdit;

namespace ostrelle {

class ClipboardPort;

/// What goes between one of the toolkit's text fields and other programs: cutting, copying and pasting, by the
/// program's own way to the clipboard. The toolkit's own ways wait on the main thread for a program that may hang: the
/// middle button, which pastes what is selected elsewhere, and drags of text in and out do nothing, therefore. Main
/// thread.
class FieldExchange final : public QObject
{
    Q_OBJECT
public:
    /// Both outlive this.
    FieldExchange(ClipboardPort &port, QLineEdit &field, QObject *parent = nullptr);
    FieldExchange(ClipboardPort &port, QTextEdit &editor, QObject *parent = nullptr);

    void cut();
    void copy();
    /// Puts what is on the clipboard in the place of what is selected, as soon as it has been read.
    void paste();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool takeKey(const QKeyEvent &event);

    ClipboardPort &m_port;
    std::function<QString()> m_selection;
    /// In the place of what is selected. Nothing where the field is for reading only.
    std::function<void(const QString &text)> m_insert;
    /// A press at that place of what is shown is about to come.
    std::function<void(const QPoint &place)> m_preparePress;
};

} // namespace ostrelle
