#pragma once

#include "media_client/HelperPool.h"

#include <QString>

#include <array>
#include <set>

namespace ostrelle {

/// Which helper is asked first for the picture of a file: of a kind that one of them has declined, the one that knew
/// it. By the name's ending, so it can be wrong, and the other one has to be asked then. Main thread.
class HelperGuess
{
public:
    /// As in HelperRequest; without an ending there is nothing to go by.
    using Ending = std::array<char, 16>;

    HelperKind helperFor(const Ending &ending) const
    {
        return m_forExtra.contains(ending) ? HelperKind::Extra : HelperKind::Light;
    }
    /// A file of this ending had its picture from this helper.
    void learn(const Ending &ending, HelperKind helper);

private:
    std::set<Ending> m_forExtra;
};

/// The ending of the name as a helper is told it: a word in ASCII, or nothing.
HelperGuess::Ending endingOf(const QString &path);

/// Which helper is asked first for anything but a picture of a file whose name has this ending. Where the name is
/// wrong, another one knows it too.
HelperKind firstHelperFor(HelperCommand command, const HelperGuess::Ending &ending);

/// The executable in the folder of the helpers.
QString executableOf(HelperKind kind, const QString &folder);

} // namespace ostrelle
