#pragma once

#include "app/DesktopReport.h"

namespace ostrelle {

/// What is said of the desktop's portal, and of each of its interfaces that the program asks. `isGuest` is the display
/// server's (Platform::isGuest()).
QList<DesktopFinding> portalFindings(const BusServices &services, bool isGuest);

} // namespace ostrelle
