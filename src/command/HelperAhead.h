#pragma once

#include <QStringList>

namespace ostrelle {

/// Starts the media helper that a command line will ask first, when it will: it loads while the rest of this process
/// does. `words` are the arguments without the program's name. Needs no application object.
void startHelperAhead(const QStringList &words);

} // namespace ostrelle
