#include "media_client/MediaClient.h"

#include "media_client/HelperGuess.h"

#include <QDir>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logMedia, "ostrelle.media")

/// Opening and looking into the cache.
constexpr auto kAdmissionDeadline = 3s;
/// Files opened ahead of the helpers, for each of them and each kind. No more, so that what is asked for next still
/// comes first.
constexpr int kAdmittedAhead = 2;

constexpr std::array kKinds{HelperKind::Facts, HelperKind::Light, HelperKind::Sound, HelperKind::Extra};

/// More than any object of facts takes.
constexpr quint32 kFactsLimit = 16 * 1024;

bool isAboutFacts(HelperCommand command)
{
    return command != HelperCommand::Thumbnail && command != HelperCommand::ToPng;
}

quint32 outputLimitOf(const HelperRequest &request)
{
    if (isAboutFacts(request.command))
        return kFactsLimit;
    if (request.command == HelperCommand::ToPng)
        return MediaClient::kPngLimit;
    return 4 * (request.side * request.side + request.cacheSide * request.cacheSide);
}

template <typename Info>
std::variant<Info, MediaFailure> factsOf(const HelperReply &reply, std::optional<Info> info)
{
    if (reply.failure)
        return *reply.failure;
    return info ? std::variant<Info, MediaFailure>(*info) : MediaFailure::Broken;
}

HelperReply replyOf(MediaFailure failure)
{
    HelperReply reply;
    reply.failure = failure;
    return reply;
}

/// Worth remembering on the disk: what the file is, not what this machine was short of.
bool isAboutFile(MediaFailure failure)
{
    return failure == MediaFailure::Broken || failure == MediaFailure::NoPicture || failure == MediaFailure::TooLarge ||
           failure == MediaFailure::TimedOut || failure == MediaFailure::HelperLost;
}

MediaJob thumbnailJob(int side, MediaClient::PictureAnswer answer)
{
    MediaJob job;
    job.request.side = static_cast<quint32>(std::clamp(side, 1, MediaClient::kLongestSide));
    job.deliver = [answer = std::move(answer)](HelperReply &reply) {
        if (reply.failure) {
            answer(*reply.failure);
            return;
        }
        const HelperAnswer &header = reply.answer;
        // The part for the cache lies behind it.
        reply.payload.truncate(qsizetype(header.width) * qsizetype(header.height) * 4);
        answer(MediaPicture{static_cast<int>(header.width), static_cast<int>(header.height), reply.payload,
                            static_cast<int>(header.sourceWidth), static_cast<int>(header.sourceHeight)});
    };
    return job;
}

bool isStill(const FileDescriptor &file, const ThumbnailSubject &subject)
{
    struct stat facts = {};
    return ::fstat(file.get(), &facts) == 0 && facts.st_mtim.tv_sec == subject.modified;
}

} // namespace

MediaClient::MediaClient(TaskScheduler &scheduler, const Places &places, Helpers helpers, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_cache(places.thumbnails)
    , m_admission(m_cache, [this](quint64 number, AdmittedFile file) { takeAdmitted(number, std::move(file)); })
    , m_helpers(scheduler, places.helpers, helpers.most, helpers.priority,
                [this](quint64 number, HelperReply reply) { takeReply(number, std::move(reply)); })
{
    connect(&m_helpers, &HelperPool::roomMade, this, &MediaClient::startMore);
}

MediaClient::MediaClient(TaskScheduler &scheduler, const Places &places, QObject *parent)
    : MediaClient(scheduler, places, Helpers(), parent)
{
}

MediaClient::~MediaClient() = default;

MediaRequest MediaClient::thumbnail(const QString &path, int side, CacheUse cacheUse, PictureAnswer answer, Links links)
{
    MediaJob job = thumbnailJob(side, std::move(answer));
    job.path = QDir::cleanPath(path);
    job.usesCache = cacheUse == CacheUse::ReadAndFill && !m_cache.contains(job.path);
    job.followsLinks = links == Links::Follow;
    return add(std::move(job));
}

MediaRequest MediaClient::thumbnailOfBytes(const QByteArray &bytes, int side, Shape shape, PictureAnswer answer)
{
    MediaJob job = thumbnailJob(side, std::move(answer));
    job.bytes = bytes;
    job.request.isSquare = shape == Shape::Square ? 1 : 0;
    return add(std::move(job));
}

MediaRequest MediaClient::convertToPng(const QByteArray &bytes, PngAnswer answer)
{
    MediaJob job;
    job.bytes = bytes;
    job.request.command = HelperCommand::ToPng;
    job.deliver = [answer = std::move(answer)](HelperReply &reply) {
        answer(reply.failure ? PngResult(*reply.failure) : PngResult(std::move(reply.payload)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::audioInfo(const QString &path, AudioInfoAnswer answer)
{
    MediaJob job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::AudioInfo;
    job.deliver = [answer = std::move(answer), path = job.path](HelperReply &reply) {
        answer(factsOf(reply, audioInfoFromJson(reply.payload, path)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::imageInfo(const QString &path, ImageInfoAnswer answer)
{
    MediaJob job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::ImageInfo;
    job.deliver = [answer = std::move(answer), path = job.path](HelperReply &reply) {
        answer(factsOf(reply, imageInfoFromJson(reply.payload, path)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::tempo(const QString &path, TempoAnswer answer)
{
    MediaJob job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::Tempo;
    job.deliver = [answer = std::move(answer)](HelperReply &reply) {
        answer(reply.failure ? std::nullopt : tempoFromJson(reply.payload));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::add(MediaJob job)
{
    job.request.extension = endingOf(job.path);
    const quint64 number = m_jobs.add(std::move(job)).number;
    startSoon();
    return {*this, number};
}

/// From the event loop, when all that is asked for at once is known and the last of it comes first.
void MediaClient::startSoon()
{
    if (!m_start.isPending())
        m_start = m_scheduler.after(0s, this, [this] { startMore(); });
}

void MediaClient::drop(quint64 number)
{
    if (!m_jobs.find(number))
        return;
    // Its answer outlives this call: dropping may happen from within it.
    const MediaJob job = m_jobs.take(number);
    if (m_jobs.size() > 0)
        startSoon();
}

void MediaClient::raise(quint64 number)
{
    m_jobs.raise(number);
}

bool MediaClient::isPending(quint64 number)
{
    return m_jobs.find(number) != nullptr;
}

void MediaClient::startMore()
{
    std::vector kinds(kKinds.begin(), kKinds.end());
    while (MediaJob *job = m_jobs.foremost(MediaJob::Stage::Ready, kinds)) {
        if (!start(*job))
            std::erase(kinds, job->helper);
    }
    for (const HelperKind kind : kKinds)
        admitMore(kind);
}

bool MediaClient::start(MediaJob &job)
{
    const int file = (job.admitted.cached ? job.admitted.cached : job.admitted.file).get();
    HelperRequest request = job.request;
    if (job.usesCache && !job.admitted.cached)
        request.cacheSide = static_cast<quint32>(DesktopThumbnails::sideFor(static_cast<int>(request.side)));
    request.outputLimit = outputLimitOf(request);
    const auto isNeeded = [this](HelperKind kind) { return m_jobs.isNear(kind); };
    if (!m_helpers.hand(job.helper, isNeeded, job.number, request, file))
        return false;
    job.stage = MediaJob::Stage::Running;
    return true;
}

void MediaClient::admitMore(HelperKind kind)
{
    for (int room = kAdmittedAhead * m_helpers.size() - m_jobs.aheadOf(kind); room > 0; --room) {
        MediaJob *job = m_jobs.foremost(MediaJob::Stage::Waiting, std::array{kind});
        if (!job)
            return;
        job->stage = MediaJob::Stage::Admitting;
        m_admission.admit({.number = job->number,
                           .path = job->path,
                           .bytes = job->bytes,
                           .cacheSide = job->usesCache ? static_cast<int>(job->request.side) : 0,
                           .followsLinks = job->followsLinks || isAboutFacts(job->request.command)});
        job->deadline = m_scheduler.after(kAdmissionDeadline, this, [this, number = job->number] {
            finish(number, replyOf(MediaFailure::Unreadable));
        });
    }
}

void MediaClient::takeAdmitted(quint64 number, AdmittedFile file)
{
    MediaJob *job = m_jobs.find(number);
    if (!job)
        return;
    job->deadline.cancel();
    job->stage = MediaJob::Stage::Ready;
    job->bytes.clear();
    if (file.failure) {
        finish(number, replyOf(*file.failure));
        return;
    }
    job->admitted = std::move(file);
    // What the cache has is PNG.
    if (job->admitted.cached)
        job->helper = HelperKind::Light;
    startMore();
}

void MediaClient::takeReply(quint64 number, HelperReply reply)
{
    MediaJob *job = m_jobs.find(number);
    if (!job) {
        startMore();
        return;
    }
    if (m_jobs.isAskedAgain(*job, reply)) {
        job->stage = MediaJob::Stage::Ready;
        startMore();
        return;
    }
    if (reply.isDeclined)
        reply.failure = job->guessFailure.value_or(MediaFailure::Unsupported);
    remember(*job, reply);
    finish(number, std::move(reply));
}

void MediaClient::remember(MediaJob &job, const HelperReply &reply)
{
    const bool isCacheable = job.usesCache && !job.admitted.subject.uri.isEmpty();
    if (!isCacheable || job.admitted.cached || (reply.failure && !isAboutFile(*reply.failure)))
        return;
    // Shared, because a queued job has to be copyable.
    const auto file = std::make_shared<FileDescriptor>(std::move(job.admitted.file));
    const ThumbnailSubject subject = job.admitted.subject;
    if (reply.failure) {
        m_writer.post([cache = m_cache, subject, file] {
            if (isStill(*file, subject))
                cache.storeFailure(subject);
        });
        return;
    }
    const HelperAnswer &header = reply.answer;
    if (header.cacheWidth == 0)
        return;
    const QByteArray rgba = reply.payload.mid(qsizetype(header.width) * qsizetype(header.height) * 4);
    const int side = DesktopThumbnails::sideFor(static_cast<int>(job.request.side));
    m_writer.post([cache = m_cache, subject, file, side, header, rgba] {
        // One that was written while it was read has a thumbnail of neither state.
        if (isStill(*file, subject))
            cache.store(subject, side, static_cast<int>(header.cacheWidth), static_cast<int>(header.cacheHeight), rgba);
    });
}

void MediaClient::finish(quint64 number, HelperReply reply)
{
    if (reply.failure == MediaFailure::HelperLost || reply.failure == MediaFailure::TimedOut)
        qCWarning(logMedia, "a media helper was lost on a file");
    else if (reply.failure == MediaFailure::HelperMissing)
        qCWarning(logMedia, "a media helper could not be reached");
    // The answer may drop this or any other request, or delete the client.
    const MediaJob job = m_jobs.take(number);
    const QPointer<MediaClient> guard(this);
    job.deliver(reply);
    if (guard)
        startMore();
}

} // namespace ostrelle
