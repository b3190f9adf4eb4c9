#pragma once

namespace ostrelle {

/// Which of the services that other programs offer on the session bus are there.
struct BusServices
{
    bool hasBus = false;
    bool hasPortal = false; ///< runs, or starts when it is asked for

    /// Waits for the answers of the bus: not for a process that shows something.
    static BusServices look();
};

} // namespace ostrelle
