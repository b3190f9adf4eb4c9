#pragma once

#include "platform/PanelHost.h"
#include "platform/x11/X11Backdrop.h"
#include "platform/x11/X11DialogStacking.h"
#include "platform/x11/X11Glass.h"
#include "platform/x11/X11KeyboardFocus.h"
#include "platform/x11/X11PanelWindow.h"

#include <QPointer>

class QWindow;

namespace ostrelle {

class WatchConnection;

/// The panel as an override-redirect window: above docks and full-screen windows, on every desktop, never activated by
/// the window manager. Its width and x are constant on a screen; only the height and the regions follow (a change of
/// either shows for a moment as a sideways jump under compositors).
class X11PanelHost final : public PanelHost
{
    Q_OBJECT
public:
    explicit X11PanelHost(WatchConnection &watch, QObject *parent = nullptr);

    void attach(QWidget &panel) override;
    void place(const QString &screenName, const QSizeF &size) override;
    void raise() override;
    void setGivingWay(bool givesWay) override;
    void setInteractiveRect(const QRectF &rect) override;
    void setOutline(const QPainterPath &outline) override;
    Glass glass() const override { return m_glass.glass(); }
    bool hasCompositor() const override { return m_glass.hasCompositor(); }
    void captureBackdrop(const QRectF &area, QObject *context, std::function<void(BackdropCapture)> answer) override;
    void takeKeyboard(const ActivationToken &token) override;
    void releaseKeyboard() override { m_focus.giveBack(); }
    bool hasKeyboard() const override { return m_focus.isHeld(); }

    const X11PanelWindow &window() const { return m_window; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The panel has a native window, or another one than before.
    void windowReplaced(QWindow *window);

private:
    void adoptWindow();

    QPointer<QWidget> m_panel;
    X11Glass m_glass;
    X11PanelWindow m_window;
    X11KeyboardFocus m_focus;
    X11Backdrop m_backdrop;
    X11DialogStacking m_dialogs;
};

} // namespace ostrelle
