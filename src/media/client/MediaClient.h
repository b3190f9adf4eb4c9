#pragma once

#include "foundation/SerialQueue.h"
#include "foundation/TaskScheduler.h"
#include "media_client/AudioInfo.h"
#include "media_client/DesktopThumbnails.h"
#include "media_client/FileAdmission.h"
#include "media_client/HelperPool.h"
#include "media_client/HelperPriority.h"
#include "media_client/ImageInfo.h"
#include "media_client/JobQueue.h"
#include "media_client/MediaPicture.h"
#include "media_client/MediaRequest.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace ostrelle {

/// Pictures of files and of copied bytes, decoded by helper processes that can do nothing else. Nothing blocks: files
/// are opened on other threads, helpers are waited for by their sockets, everything has a deadline. At most two helpers
/// run, for as long as there is work and a few seconds more. Of what waits, the request made (or raised) last comes
/// first.
///
/// Main thread. An answer comes from the event loop, never from within the call; exactly once, unless its handle went
/// away, or the client.
class MediaClient : public QObject
{
    Q_OBJECT
public:
    using PictureAnswer = std::function<void(const PictureResult &result)>;
    using PngAnswer = std::function<void(const PngResult &result)>;
    using AudioInfoAnswer = std::function<void(const std::variant<AudioInfo, MediaFailure> &result)>;
    using ImageInfoAnswer = std::function<void(const std::variant<ImageInfo, MediaFailure> &result)>;
    using TempoAnswer = std::function<void(std::optional<double> bpm)>;

    enum class Shape {
        Whole,  ///< the longer side as asked for
        Square, ///< the middle square of the picture, both sides as asked for
    };
    enum class CacheUse { ReadAndFill, None };
    /// Whether a symbolic link stands for what it leads to, or is no file.
    enum class Links { Follow, Refuse };

    /// The longest side that may be asked for.
    static constexpr int kLongestSide = 1024;
    /// A picture in the clipboard's history is not larger.
    static constexpr int kPngLimit = 16 * 1024 * 1024;

    struct Places
    {
        QString helpers;    ///< folder of the executables, ostrelle-media and its kin
        QString thumbnails; ///< the desktop's cache of them, AppPaths::thumbnails()
    };

    struct Helpers
    {
        int most = 2; ///< that run at a time
        HelperPriority priority = HelperPriority::Usual;
    };

    MediaClient(TaskScheduler &scheduler, const Places &places, Helpers helpers, QObject *parent = nullptr);
    MediaClient(TaskScheduler &scheduler, const Places &places, QObject *parent = nullptr);
    ~MediaClient() override;

    /// A picture of the file at an absolute path: of images the image, of video a frame, of audio the cover, of
    /// documents the first page. It is not made larger than it is, `side` is 1 to kLongestSide device pixels.
    [[nodiscard]] MediaRequest thumbnail(const QString &path, int side, CacheUse cacheUse, PictureAnswer answer,
                                         Links links = Links::Refuse);
    /// The same of bytes in memory, of any kind that files may have; without the cache.
    [[nodiscard]] MediaRequest thumbnailOfBytes(const QByteArray &bytes, int side, Shape shape, PictureAnswer answer);
    /// An image of any kind as PNG, as large as it is, upright and in sRGB. Beyond 40 million pixels, or kPngLimit
    /// bytes: MediaFailure::TooLarge.
    [[nodiscard]] MediaRequest convertToPng(const QByteArray &bytes, PngAnswer answer);

    /// The facts of the audio file at an absolute path, without a word about its name's ending.
    [[nodiscard]] MediaRequest audioInfo(const QString &path, AudioInfoAnswer answer);
    /// The facts of the image file at an absolute path.
    [[nodiscard]] MediaRequest imageInfo(const QString &path, ImageInfoAnswer answer);
    /// The tempo of the audio file at an absolute path, by listening to it; none when there is none to be found.
    [[nodiscard]] MediaRequest tempo(const QString &path, TempoAnswer answer);

    /// The requests that have no answer yet.
    int pendingCount() const { return static_cast<int>(m_jobs.size()); }

private:
    friend class MediaRequest;

    MediaRequest add(MediaJob job);
    void drop(quint64 number);
    void raise(quint64 number);
    bool isPending(quint64 number);

    void startSoon();
    void startMore();
    bool start(MediaJob &job);
    void admitMore(HelperKind kind);
    void takeAdmitted(quint64 number, AdmittedFile file);
    void takeReply(quint64 number, HelperReply reply);
    void remember(MediaJob &job, const HelperReply &reply);
    void finish(quint64 number, HelperReply reply);

    TaskScheduler &m_scheduler;
    const DesktopThumbnails m_cache;
    FileAdmission m_admission;
    HelperPool m_helpers;
    /// Writes the cache.
    SerialQueue m_writer;
    JobQueue m_jobs;
    Task m_start;
};

} // namespace ostrelle
