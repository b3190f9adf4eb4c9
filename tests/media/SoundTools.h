#pragma once

#include "media_client/AudioInfo.h"
#include "media_client/MediaPicture.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace ostrelle {

class MediaClient;

/// Runs a command line of the shell in `folder`; the test ends here when it fails.
void runTool(const QString &folder, const QString &command);

/// What the real helpers say of a file; waits for their answer.
std::variant<AudioInfo, MediaFailure> audioInfoOf(MediaClient &client, const QString &path);

/// A frame of an ID3v2 tag: `text` in Latin-1. `version` is 2, 3 or 4.
QByteArray id3Frame(int version, const QByteArray &name, const QByteArray &text);
/// A whole tag of these frames and some padding.
QByteArray id3Tag(int version, const QByteArray &frames, int flags = 0);

/// A box of an MP4 file.
QByteArray mp4Box(const QByteArray &type, const QByteArray &content);

QByteArray bigEndian(quint64 value, int size);
QByteArray littleEndian(quint64 value, int size);

} // namespace ostrelle
