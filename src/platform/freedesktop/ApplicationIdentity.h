#pragma once

#include "platform/Frontmost.h"

#include <QString>
#include <QStringList>

namespace ostrelle {

/// Everything the desktop says about the application behind a window. Empty: not said.
struct ApplicationFacts
{
    QString sandboxId;     ///< Flatpak application id
    QString snapName;      ///< Snap package name
    QString toolkitId;     ///< _GTK_APPLICATION_ID
    QString scopeId;       ///< id in the name of its systemd scope
    QString classInstance; ///< first string of WM_CLASS
    QString className;     ///< second string of WM_CLASS
    QString executable;    ///< file name of the program
    QString desktopFileId; ///< desktop file that was found for it, without ".desktop"
    QString desktopName;   ///< that file's Name
};

/// The application those facts stand for: identifiers most specific first, then the reverse-DNS identifiers by which
/// password managers and keyrings are excluded, whatever this platform calls them. Pure; any thread.
Application applicationOf(const ApplicationFacts &facts);

} // namespace ostrelle
