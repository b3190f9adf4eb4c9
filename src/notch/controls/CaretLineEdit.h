#pragma once

#include "platform/FieldExchange.h"

#include <QLineEdit>
#include <QProxyStyle>

namespace ostrelle {

class ClipboardPort;
class NotchAppearance;

/// A bare line of text in the notch's colours, with a caret in the accent colour. The platform's would have the colour
/// of the text.
class CaretLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    CaretLineEdit(const NotchAppearance &appearance, ClipboardPort &clipboard, QWidget *parent);
    ~CaretLineEdit() override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void applyPalette();

    /// Takes the platform's caret away.
    class NoCaretStyle : public QProxyStyle
    {
    public:
        int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    };

    const NotchAppearance &m_appearance;
    NoCaretStyle m_style;
    FieldExchange m_exchange;
};

} // namespace ostrelle
