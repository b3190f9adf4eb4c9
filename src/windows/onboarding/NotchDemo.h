#pragma once

#include "foundation/Task.h"
#include "notch/SurfaceCache.h"
#include "notch/controls/AnimatedNumber.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include <chrono>

namespace ostrelle {

struct Spring;
class TaskScheduler;

/// The notch in small, on a drawn screen, opening and closing as long as it is seen. It is painted by what paints the
/// notch itself.
class NotchDemo : public QWidget
{
    Q_OBJECT
public:
    /// Around the screen, for its shadow.
    static constexpr int kShadowRoom = 36;

    NotchDemo(const ControlContext &context, TaskScheduler &scheduler, QWidget *parent);

    bool isOpen() const { return m_opening.target() > 0; }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void moveAfter(std::chrono::nanoseconds delay, double target, const Spring &spring);
    void paintScreen();
    void paintNotch(QPainter &painter, double opening);

    ControlContext m_context;
    TaskScheduler &m_scheduler;
    AnimatedNumber m_opening; ///< 0 closed, 1 open
    Task m_next;
    QPixmap m_screen;  ///< with its shadow; null when it must be painted anew
    QImage m_backdrop; ///< the screen behind the glass
    SurfaceCache m_cache;
};

} // namespace ostrelle
