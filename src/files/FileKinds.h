#pragma once

#include "files/FileFacts.h"

class QString;

namespace ostrelle {

// What a file holds, judged by its name alone with the desktop's MIME database: nothing is opened, nothing need exist.

/// False for a folder and for a playlist; else whether the name's type, or one that it descends from, is an audio type.
bool isAudio(const QString &path, const FileFacts &facts);
/// The same for images.
bool isImage(const QString &path, const FileFacts &facts);

} // namespace ostrelle
