#pragma once

#include "records/ColorFormat.h"

#include <QString>

namespace ostrelle {

/// The loupe without a notch, for a command while no program runs: prints the colour picked, adds all that were
/// gathered to the stored recent ones, and returns the exit status, 1 when nothing was picked. The application object
/// exists.
int runColorPick(const QString &backend, ColorFormat format);

} // namespace ostrelle
