#pragma once

#include "platform/ColourPicker.h"
#include "platform/DisplayProfile.h"
#include "platform/Screens.h"
#include "platform/loupe/LoupeLabels.h"
#include "platform/loupe/LoupeLens.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11DesktopCapture.h"
#include "platform/x11/X11LoupeGrab.h"
#include "platform/x11/X11LoupeInput.h"
#include "platform/x11/X11MonitorProfiles.h"
#include "platform/x11/X11OverlayWindow.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {

class ColordProfiles;
class TaskScheduler;
class X11RawPointer;

/// One loupe, from the question to the answer. It has a connection of its own: with the object, or with the process,
/// everything ends that it holds of the desktop.
class X11Loupe final : public QObject
{
    Q_OBJECT
public:
    enum class Ending { Chosen, Unavailable }; ///< Unavailable: the user has seen nothing
    /// Called from the event loop. The loupe may be destroyed from inside `ended`.
    struct Handlers
    {
        std::function<void(const PickedColour &)> gathered;
        std::function<void(Ending, std::optional<PickedColour>)> ended; ///< once; the desktop is free by then
    };

    /// Null when there is a loupe of another process, or no further connection.
    static std::unique_ptr<X11Loupe> open(const Screens &screens, X11RawPointer &rawPointer, TaskScheduler &scheduler,
                                          Handlers handlers);
    X11Loupe(std::unique_ptr<WatchConnection> connection, const Screens &screens, X11RawPointer &rawPointer,
             TaskScheduler &scheduler, Handlers handlers);
    ~X11Loupe() override;

private:
    /// What depends on the monitor that the hot spot is on.
    struct Place
    {
        QRect frame; ///< native
        double refreshRate;
        LoupeLens lens;
        LoupeLabels labels;
        std::optional<DisplayProfile> profile;
        bool hasLensShape = false;
        bool hasLabelsShape = false;
    };

    void begin();
    void moveTo(const QPoint &hotSpot);
    void zoom(int steps);
    void choose(X11LoupeInput::Choice choice);
    /// Gives the desktop back at once.
    void end(Ending ending);
    void scheduleDraw();
    void draw();
    void ensurePlace();
    void show(X11OverlayWindow &window, const QPoint &position, bool &hasShape);

    /// In sRGB, of the pixel at the hot spot.
    PickedColour pointedColour() const;
    /// It may come or go while the loupe is open.
    void followCompositor();
    void askColord();
    QPoint nearestOnScreen(const QPoint &position) const;
    /// Soon, from the event loop: this may be the middle of an event of the connection that ends with the loupe.
    void tellSoon();
    void tell();

    std::unique_ptr<WatchConnection> m_connection;
    const Screens &m_screens;
    X11RawPointer &m_rawPointer;
    TaskScheduler &m_scheduler;
    Handlers m_handlers;
    QList<Screen> m_arrangement; ///< when the capture was taken
    std::optional<X11DesktopCapture> m_capture;
    std::vector<X11MonitorProfile> m_monitors; ///< at least one
    std::unique_ptr<ColordProfiles> m_colord;
    LoupeLens::Shadow m_shadow = LoupeLens::Shadow::None;
    WatchConnection::Subscription m_compositorWatch;
    std::unique_ptr<X11OverlayWindow> m_lensWindow;
    std::unique_ptr<X11OverlayWindow> m_labelsWindow;
    std::optional<Place> m_place;
    std::optional<X11LoupeInput> m_input;
    QPoint m_hotSpot;
    int m_magnification = LoupeLens::kUsualMagnification;
    int m_gathered = 0;
    QList<PickedColour> m_untold;         ///< gathered, not told yet
    std::optional<PickedColour> m_picked; ///< the last
    std::optional<Ending> m_ending;
    Task m_telling;
    std::chrono::nanoseconds m_drawn{};
    bool m_isDrawDue = false; ///< the server reads the last picture still
    Task m_drawing;
    std::optional<X11LoupeGrab> m_grab; ///< last: let go first
};

} // namespace ostrelle
