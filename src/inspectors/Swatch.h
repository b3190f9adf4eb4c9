#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/NotchButton.h"
#include "records/SampledColor.h"

namespace ostrelle {

/// A colour to choose: a rounded square, which grows under the pointer and has a ring while it is on display. The Tab
/// key stops at those only that are made its stop.
class Swatch : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kSide = 22;
    /// Around the square, for what shows beyond its edges.
    static constexpr int kOverhang = 4;

    Swatch(const ControlContext &context, const SampledColor &color, QWidget *parent);

    const SampledColor &color() const { return m_color; }
    void setCurrent(bool current);
    void setTabStop(bool isStop);

    QSize sizeHint() const override;

Q_SIGNALS:
    void focused();
    /// `position` is the button's.
    void menuRequested(const QPointF &position);

protected:
    QRectF shape() const override;
    double cornerRadius() const override;
    bool hitButton(const QPoint &position) const override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    SampledColor m_color;
    AnimatedNumber m_current; ///< 0 to 1
};

} // namespace ostrelle
