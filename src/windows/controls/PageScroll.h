#pragma once

#include "notch/controls/ControlContext.h"
#include "notch/controls/SmoothScroll.h"

#include <QScrollArea>

namespace ostrelle {

/// Scrolls a page of a window vertically: the thumb lies over the content, and at an edge beyond which something lies
/// the content fades into the page.
class PageScroll : public QScrollArea
{
    Q_OBJECT
public:
    PageScroll(const ControlContext &context, QWidget *parent);
    ~PageScroll() override;

protected:
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class Fade;
    class Thumb;

    void arrange();
    void showFocus(const QWidget *focused);

    SmoothScroll m_scroll;
    Fade &m_top;
    Fade &m_bottom;
    Thumb &m_thumb;
};

} // namespace ostrelle
