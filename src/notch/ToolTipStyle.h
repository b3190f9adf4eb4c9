#pragma once

#include <QProxyStyle>

namespace ostrelle {

/// The application's style with tooltips that have round corners, some air around their text and an edge of a colour of
/// its own: ToolTipBase, ToolTipText and, for the edge, WindowText.
class ToolTipStyle : public QProxyStyle
{
    Q_OBJECT
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override;
};

} // namespace ostrelle
