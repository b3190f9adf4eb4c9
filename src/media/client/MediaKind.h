#pragma once

#include <QString>

#include <optional>

namespace ostrelle {

enum class NamedKind { Other, Image, Audio, Video };

/// What the ending of the name says a file is: the desktop's MIME database, and the few kinds of sounds and images that
/// it does not know. Nothing is opened, nothing need exist.
NamedKind namedKind(const QString &name);

/// Which inspector a file is for.
enum class MediaKind { Audio, Image };

/// The inspector for files of this name; videos are for the audio inspector, for their sound. None when the name says
/// nothing or something else.
std::optional<MediaKind> mediaKindOf(const QString &name);

} // namespace ostrelle
