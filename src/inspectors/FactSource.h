#pragma once

#include "foundation/RequestHandle.h"
#include "media_client/AudioInfo.h"
#include "media_client/ImageInfo.h"

#include <QString>

#include <functional>
#include <optional>

namespace ostrelle {

/// Finds out what audio and image files are, outside this process. Main thread; nothing here waits. Each request at an
/// absolute path is answered once and never before it returns; not at all when its handle has gone.
class FactSource
{
public:
    using AudioAnswer = std::function<void(const std::optional<AudioInfo> &info)>;
    using ImageAnswer = std::function<void(const std::optional<ImageInfo> &info)>;
    using TempoAnswer = std::function<void(std::optional<double> bpm)>;

    virtual ~FactSource() = default;

    /// Nothing when it is no audio file that can be read.
    virtual RequestHandle audioInfo(const QString &path, AudioAnswer answer) = 0;
    /// Nothing when it is no image file that can be read.
    virtual RequestHandle imageInfo(const QString &path, ImageAnswer answer) = 0;
    /// The tempo by listening, beats per minute; nothing when there is none to be found.
    virtual RequestHandle tempo(const QString &path, TempoAnswer answer) = 0;
};

} // namespace ostrelle
