#pragma once

#include "notch/FrameClock.h"
#include "platform/OwnFrame.h"
#include "windows/onboarding/OnboardingView.h"

#include <QImage>
#include <QMargins>
#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

namespace ostrelle {

class OrdinaryWindows;

/// The window of the first run: of a fixed size, without the desktop's frame, moved by its background. Escape and
/// Ctrl+W close it.
class OnboardingWindow : public QWidget
{
    Q_OBJECT
public:
    OnboardingWindow(const OnboardingSurroundings &around, OrdinaryWindows &windows);
    ~OnboardingWindow() override;

    const OnboardingView &view() const { return m_view; }
    /// Puts what the user sees as the window around this point.
    void centreOn(const QPointF &point);

Q_SIGNALS:
    void closed();
    /// Another window has the keyboard.
    void deactivated();
    /// The steps were gone through to their end.
    void finished();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void forgetGround();

    NotchAppearance &m_appearance;
    QMargins m_room; ///< for the shadow
    FrameClock m_frames;
    OnboardingView &m_view;
    std::unique_ptr<OwnFrame> m_frame;
    QImage m_ground; ///< null when it must be painted anew
    std::optional<QPoint> m_pressed;
};

} // namespace ostrelle
