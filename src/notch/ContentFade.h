#pragma once

#include <QGraphicsEffect>
#include <QPixmap>

namespace ostrelle {

/// Shows a whole tool at less than full opacity, and only within the surface: at the bottom it fades out, so that
/// nothing runs under the seam. Enabled only while something moves.
class ContentFade : public QGraphicsEffect
{
    Q_OBJECT
public:
    explicit ContentFade(QObject *parent = nullptr);

    /// `visible` is in the widget's coordinates. The widget is not repainted by this.
    void setLook(double opacity, const QRectF &visible);

protected:
    void draw(QPainter *painter) override;

private:
    const QPixmap &content(double ratio);

    QPixmap m_content; ///< the widget as it was painted last
    double m_opacity = 1;
    QRectF m_visible;
};

/// Paints a picture of a tool in the same way.
void paintFadedContent(QPainter &painter, const QPointF &position, const QPixmap &content, const QRectF &visible);

} // namespace ostrelle
