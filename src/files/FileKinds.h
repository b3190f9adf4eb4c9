#pragma once

#include "files/FileFacts.h"

#include <QStringList>

namespace ostrelle {

// What a file holds, judged by its name alone with the desktop's MIME database: nothing is opened, nothing need exist.

/// False for a folder; else whether the name's type, or one that it descends from, is an audio type.
bool isAudio(const QString &path, const FileFacts &facts);
/// The same for video, which may have audio with it.
bool isVideo(const QString &path, const FileFacts &facts);
/// The same for images.
bool isImage(const QString &path, const FileFacts &facts);

/// Patterns, as "*.caf", of the names that are audio, or images, without the desktop's database saying so.
QStringList extraAudioPatterns();
QStringList extraImagePatterns();

} // namespace ostrelle
