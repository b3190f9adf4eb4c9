#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QPixmap>
#include <QWidget>

namespace ostrelle {

/// Replaces all movement of the panel where the desktop wants none: the picture from before a change fades into the one
/// after it. It lies above everything, replaces what is painted below it, and passes the pointer through.
class CrossFade : public QWidget
{
    Q_OBJECT
public:
    CrossFade(const ControlContext &context, QWidget *panel);

    /// To be called before the change.
    void begin();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap pictureOfPanel();
    void step();

    QWidget &m_panel;
    AnimatedNumber m_progress;
    QPixmap m_before;
    QPixmap m_after;
    bool m_isLookingBelow = false;
};

} // namespace ostrelle
