#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>

#include <vector>

namespace ostrelle {

class WatchConnection;

/// A monitor, and what the desktop has told of its colours.
struct X11MonitorProfile
{
    QRect frame;    ///< native
    QString output; ///< as RandR names it; empty for a monitor that was made up
    QByteArray icc; ///< empty: none is told
};

/// All monitors, in the server's order, with the profiles that their outputs or the root window carry ("ICC Profiles In
/// X Specification" 0.4). A few round trips.
std::vector<X11MonitorProfile> readMonitorProfiles(WatchConnection &connection);

} // namespace ostrelle
