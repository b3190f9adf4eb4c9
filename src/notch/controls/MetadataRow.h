#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QPointer>
#include <QWidget>

class QLineEdit;

namespace ostrelle {

class ClipboardPort;
class GlyphButton;
class Haptics;

/// One fact about a file: a label, and a value that can be selected or copied with the button that appears under the
/// pointer.
class MetadataRow : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 27;

    enum class Emphasis { Normal, Emphasized };

    struct Content
    {
        QString label;
        QString value;
        Emphasis emphasis = Emphasis::Normal;
    };

    MetadataRow(const ControlContext &context, ClipboardPort &clipboard, Haptics &haptics, const Content &content,
                QWidget *parent);

    const QString &label() const { return m_content.label; }
    const QString &value() const { return m_content.value; }
    void setValue(const QString &value);
    /// A control at the end of the row, beyond the value, which becomes a child; null: none. The previous one is
    /// deleted.
    void setAccessory(QWidget *accessory);

Q_SIGNALS:
    /// The value was put on the clipboard.
    void copied();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setHovered(bool hovered);
    void arrange();

    ControlContext m_context;
    Content m_content;
    QLineEdit &m_value;
    GlyphButton &m_copy;
    QPointer<QWidget> m_accessory;
    AnimatedNumber m_hover;
};

} // namespace ostrelle
