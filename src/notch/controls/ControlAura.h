#pragma once

#include <QRubberBand>

#include <functional>

class QPainter;

namespace ostrelle {

/// Shows what a control paints beyond its own rectangle: the focus ring and the glow. A widget above the control, which
/// follows it and passes the pointer through. It is a rubber band only because assistive technology is not told about
/// those.
class ControlAura : public QRubberBand
{
    Q_OBJECT
public:
    /// `reach` is how far it goes beyond the control on each side, logical pixels. `paint` gets a painter in the
    /// control's coordinates. `parent` is the control's, or one around it.
    ControlAura(QWidget &control, int reach, std::function<void(QPainter &)> paint, QWidget *parent);
    /// Gone at once, deleted later: the toolkit may be going through the widgets, to hide them for example.
    void end();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    // A rubber band would cut itself down to its frame in these.
    void resizeEvent(QResizeEvent *) override {}
    void moveEvent(QMoveEvent *) override {}
    void changeEvent(QEvent *) override {}

private:
    void follow();

    QWidget &m_control;
    int m_reach;
    std::function<void(QPainter &)> m_paint;
};

} // namespace ostrelle
