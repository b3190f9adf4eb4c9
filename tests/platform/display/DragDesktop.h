#pragma once

#include "OtherProgram.h"
#include "PeerClient.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/FileDrags.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace ostrelle {

class Platform;

/// The panel on the X11 backend, other programs, and a user who drags between them. What the panel is told of drags is
/// written down; it accepts them unless told otherwise.
class DragDesktop
{
public:
    static constexpr QPoint kSource{100, 450}; ///< where the peers' windows are
    static constexpr QPoint kTarget{500, 450};

    DragDesktop();
    ~DragDesktop();

    Platform &platform() { return *m_platform; }
    QWidget &panel() { return m_panel; }
    PeerClient &user() { return m_user; }

    /// Presses on the source and moves until its drag begins.
    void pickUp(OtherProgram &source);
    /// Moves until the panel is entered once more.
    void moveOverPanel();
    /// Moves until the condition holds: some programs begin or go on only with the pointer's motion.
    void moveAround(const QPoint &native, const char *what, const std::function<bool()> &condition);
    void letGo() { m_user.button(false); }

    /// What the user does while a drag of this program runs its own event loop: each step is repeated until it is
    /// done. A step that never is ends with the button let go.
    using Steps = std::vector<std::function<bool()>>;
    void perform(Steps steps);
    /// Steps that are done with the next visit of the panel, or when the condition holds.
    std::function<bool()> movingOverPanel();
    std::function<bool()> movingAround(const QPoint &native, std::function<bool()> condition);

    /// The longest time for which the event loop has not gone round since the last call.
    std::chrono::milliseconds longestStandstill();

    bool isAccepting = true;
    int entered = 0;
    int left = 0;
    QList<QStringList> known;
    QList<QStringList> dropped;

private:
    PeerClient m_user;
    std::unique_ptr<Platform> m_platform;
    QWidget m_panel;
    SystemTaskScheduler m_time;
    MonotonicTime m_lastBeat;
    MonotonicTime m_longest{0};
    Task m_heart;
    Steps m_steps;
    Task m_performance;
};

/// A plain source, with the options of the peer.
OtherProgram dragSource(const QStringList &options);

/// A GTK program, "source" with URIs or "target".
OtherProgram gtkDrags(const QStringList &arguments);

} // namespace ostrelle
