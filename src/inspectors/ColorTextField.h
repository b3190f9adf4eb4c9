#pragma once

#include "notch/controls/ControlContext.h"
#include "notch/controls/Shake.h"
#include "records/SampledColor.h"

#include <QWidget>

#include <optional>

namespace ostrelle {

class CaretLineEdit;
class ClipboardPort;

/// A field for a colour in words, there only while somebody types one. It shows the colour as soon as the text is one.
/// Return takes it, or refuses with a shake what is none; so does looking elsewhere, which ends it in any case, as do
/// Escape and an empty text.
class ColorTextField : public QWidget
{
    Q_OBJECT
public:
    ColorTextField(const ControlContext &context, ClipboardPort &clipboard, QWidget *parent);
    ~ColorTextField() override;

    bool isOpen() const { return m_isOpen; }
    void open(const QString &text);
    /// Puts the text where the caret is.
    void insert(const QString &text);
    /// Says that the text is no colour.
    void refuse();
    void close();

Q_SIGNALS:
    void accepted(const SampledColor &color);
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool handleKey(const QKeyEvent &event);
    void take();
    void arrange();

    ControlContext m_context;
    CaretLineEdit &m_field;
    bool m_isOpen = false;
    std::optional<SampledColor> m_color;
    Shake m_shake;
};

} // namespace ostrelle
