#include "files/FileKinds.h"

#include "media_client/MediaKind.h"

namespace ostrelle {

bool isAudio(const QString &path, const FileFacts &facts)
{
    return !facts.isFolder() && namedKind(path) == NamedKind::Audio;
}

bool isImage(const QString &path, const FileFacts &facts)
{
    return !facts.isFolder() && namedKind(path) == NamedKind::Image;
}

} // namespace ostrelle
