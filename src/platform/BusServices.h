#pragma once

#include <QStringList>

namespace ostrelle {

/// Which of the services that other programs offer on the session bus are there.
struct BusServices
{
    enum class Portal {
        Missing,
        Silent, ///< one is there, and does not answer
        Answers ///< runs, or starts when it is asked for
    };

    bool hasBus = false;
    Portal portal = Portal::Missing;
    /// What the portal of the desktop and that of documents offer: "FileChooser.OpenFile" and so on, without
    /// "org.freedesktop.portal.".
    QStringList portalMethods;
    /// The program runs in a sandbox, which asks the desktop by the portal only.
    bool isSandboxed = false;

    /// Waits for the answers of the bus, and some seconds for those of the portals, which it starts: not for a process
    /// that shows something.
    static BusServices look();
};

} // namespace ostrelle
