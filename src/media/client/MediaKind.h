#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace ostrelle {

enum class NamedKind { Other, Image, Audio, Video };

/// What the ending of the name says a file is: the desktop's MIME database, and the few kinds of sounds and images that
/// it does not know. The file is not opened, and need not exist.
NamedKind namedKind(const QString &name);

/// Patterns of names, as "*.caf", that are of this kind without the database saying so; none but of sounds and images.
QStringList extraNamePatterns(NamedKind kind);

/// Which inspector a file is for.
enum class MediaKind { Audio, Image };

/// The inspector for files of this name; videos are for the audio inspector, for their sound. None when the name says
/// nothing or something else.
std::optional<MediaKind> mediaKindOf(const QString &name);

} // namespace ostrelle
