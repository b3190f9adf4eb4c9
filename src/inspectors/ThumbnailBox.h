#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QImage>
#include <QWidget>

namespace ostrelle {

/// The place of the picture in the image tool: 162 by 162, the picture in its middle.
class ThumbnailBox : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kSide = 162;
    /// The picture's longer side at most, logical pixels.
    static constexpr int kPictureSide = 146;

    ThumbnailBox(const ControlContext &context, QWidget *parent);

    /// A null picture leaves a symbol. Of the image at `path`, whose longer side has so many pixels: a picture is not
    /// shown larger than that.
    void setPicture(const QString &path, const QImage &picture, int longerSide);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    struct Shown
    {
        QImage picture;
        int longerSide = 0;
    };

    void paintPicture(QPainter &painter, const Shown &shown, double opacity) const;

    Shown m_shown;
    Shown m_previous; ///< gives way
    AnimatedNumber m_arrival;
};

} // namespace ostrelle
