#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

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

Q_SIGNALS:
    /// The value was put on the clipboard.
    void copied();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setHovered(bool hovered);

    ControlContext m_context;
    Content m_content;
    QLineEdit &m_value;
    GlyphButton &m_copy;
    AnimatedNumber m_hover;
};

} // namespace ostrelle
