#pragma once

#include <QString>

#include <optional>

namespace ostrelle {

/// Which inspector a file is for.
enum class MediaKind { Audio, Image };

/// What the ending of the name says, with the desktop's MIME database; videos count as audio, for their sound. Nothing
/// is opened, nothing need exist; none when the name says nothing or something else.
std::optional<MediaKind> mediaKindOf(const QString &name);

} // namespace ostrelle
