#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/NotchButton.h"
#include "records/SampledColor.h"

namespace ostrelle {

/// The colour on display, with its HEX form on it. One colour turns into the next. Pressing it copies that form.
class LargeSwatch : public NotchButton
{
    Q_OBJECT
public:
    static constexpr QSize kSize{204, 112};

    LargeSwatch(const ControlContext &context, QWidget *parent);

    const SampledColor &color() const { return m_color; }
    void setColor(const SampledColor &color);

    QSize sizeHint() const override { return kSize; }

Q_SIGNALS:
    /// `position` is the button's.
    void menuRequested(const QPointF &position);

protected:
    double cornerRadius() const override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor shownColor() const;

    SampledColor m_color;
    QColor m_from;
    AnimatedNumber m_turn; ///< from m_from, 0, to the colour, 1
};

} // namespace ostrelle
