#pragma once

#include "notch/NotchSurface.h"
#include "notch/SurfaceCache.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

#include <memory>

namespace ostrelle {

class CrossFade;
class NotchController;
class NotchMenu;
class NotchRootView;
class NotchViewModel;
class PanelBackdrop;
class Platform;
class SettingsStore;
class TaskScheduler;
class ToolRegistry;
class ToolView;
class UpdateService;

/// The window of the notch: paints the surface hanging from its top centre, carries what stands on it, and hands
/// pointer, keyboard and menu to the controller. Main thread.
class NotchPanel : public QWidget
{
    Q_OBJECT
public:
    NotchPanel(NotchController &controller, SettingsStore &settings, ToolRegistry &registry, Platform &platform,
               TaskScheduler &scheduler, UpdateService &updates, const ControlContext &context);
    ~NotchPanel() override;

    /// What the surface is painted from in the present frame.
    SurfaceState surfaceState() const;
    /// The tool on screen, or null.
    ToolView *openTool() const;

Q_SIGNALS:
    void quitRequested();
    /// By the menu.
    void settingsRequested();
    /// By the menu.
    void welcomeRequested();
    /// By the settings button, which has something to tell when an update is there.
    void settingsButtonPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isExpanded() const;
    void prepareToOpen();
    void surfaceMoved();
    void updateOutline();
    QRect paintedArea() const;
    void makeMenu();

    NotchController &m_controller;
    NotchViewModel &m_viewModel;
    SettingsStore &m_settings;
    Platform &m_platform;
    ControlContext m_context;
    PanelBackdrop &m_backdrop;
    NotchRootView &m_root;
    CrossFade &m_crossFade;
    std::unique_ptr<NotchMenu> m_menu; ///< the latest one
    SurfaceCache m_cache;
    QRect m_lastPainted;
    bool m_wasMoving = false;
    bool m_wasPressed = false;
};

} // namespace ostrelle
