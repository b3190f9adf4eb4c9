#include "media_client/MediaClient.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include <sys/stat.h>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logMedia, "ostrelle.media")

/// Opening and looking into the cache.
constexpr auto kAdmissionDeadline = 3s;
/// Files opened ahead of each helper. No more, so that what is asked for next still comes first.
constexpr int kAdmittedAhead = 2;

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

/// The ending of the name as a helper is told it: a word in ASCII, or nothing.
std::array<char, 16> extensionOf(const QString &path)
{
    std::array<char, 16> extension{};
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool isWord = std::all_of(suffix.begin(), suffix.end(),
                                    [](QChar letter) { return letter.unicode() < 0x80 && letter.isLetterOrNumber(); });
    if (isWord && suffix.size() < static_cast<qsizetype>(extension.size()))
        std::transform(suffix.begin(), suffix.end(), extension.begin(), [](QChar letter) { return letter.toLatin1(); });
    return extension;
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

bool isStill(const FileDescriptor &file, const ThumbnailSubject &subject)
{
    struct stat facts = {};
    return ::fstat(file.get(), &facts) == 0 && facts.st_mtim.tv_sec == subject.modified;
}

} // namespace

struct MediaClient::Job
{
    quint64 number = 0;
    quint64 turn = 0; ///< the greatest comes first
    Stage stage = Stage::Waiting;
    QString path;
    QByteArray bytes;
    CacheUse cacheUse = CacheUse::None;
    HelperRequest request;
    HelperKind helper = HelperKind::Light;
    AdmittedFile admitted;
    Task deadline;
    Deliver deliver;
};

MediaClient::MediaClient(TaskScheduler &scheduler, const Places &places, int helpers, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_cache(places.thumbnails)
    , m_admission(m_cache, [this](quint64 number, AdmittedFile file) { takeAdmitted(number, std::move(file)); })
    , m_helpers(scheduler, places.helpers, helpers,
                [this](quint64 number, HelperReply reply) { takeReply(number, std::move(reply)); })
{
}

MediaClient::~MediaClient() = default;

MediaRequest MediaClient::thumbnail(const QString &path, int side, CacheUse cacheUse, PictureAnswer answer)
{
    Job job;
    job.path = QDir::cleanPath(path);
    job.cacheUse = m_cache.contains(job.path) ? CacheUse::None : cacheUse;
    job.request.side = static_cast<quint32>(std::clamp(side, 1, kLongestSide));
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
    return add(std::move(job));
}

MediaRequest MediaClient::thumbnailOfBytes(const QByteArray &bytes, int side, Shape shape, PictureAnswer answer)
{
    MediaRequest request = thumbnail(QString(), side, CacheUse::None, std::move(answer));
    Job &job = m_jobs.at(m_lastNumber);
    job.bytes = bytes;
    job.request.isSquare = shape == Shape::Square ? 1 : 0;
    return request;
}

MediaRequest MediaClient::convertToPng(const QByteArray &bytes, PngAnswer answer)
{
    Job job;
    job.bytes = bytes;
    job.request.command = HelperCommand::ToPng;
    job.deliver = [answer = std::move(answer)](HelperReply &reply) {
        answer(reply.failure ? PngResult(*reply.failure) : PngResult(std::move(reply.payload)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::audioInfo(const QString &path, AudioInfoAnswer answer)
{
    Job job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::AudioInfo;
    job.deliver = [answer = std::move(answer), path = job.path](HelperReply &reply) {
        answer(factsOf(reply, audioInfoFromJson(reply.payload, path)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::imageInfo(const QString &path, ImageInfoAnswer answer)
{
    Job job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::ImageInfo;
    job.deliver = [answer = std::move(answer), path = job.path](HelperReply &reply) {
        answer(factsOf(reply, imageInfoFromJson(reply.payload, path)));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::tempo(const QString &path, TempoAnswer answer)
{
    Job job;
    job.path = QDir::cleanPath(path);
    job.request.command = HelperCommand::Tempo;
    job.deliver = [answer = std::move(answer)](HelperReply &reply) {
        answer(reply.failure ? std::nullopt : tempoFromJson(reply.payload));
    };
    return add(std::move(job));
}

MediaRequest MediaClient::add(Job job)
{
    job.request.extension = extensionOf(job.path);
    job.number = ++m_lastNumber;
    job.turn = ++m_lastTurn;
    const quint64 number = job.number;
    m_jobs.emplace(number, std::move(job));
    // From the event loop, when all that is asked for at once is known and the last of it comes first.
    if (!m_start.isPending())
        m_start = m_scheduler.after(0s, this, [this] { startMore(); });
    return {*this, number};
}

void MediaClient::drop(quint64 number)
{
    const auto job = m_jobs.find(number);
    if (job == m_jobs.end())
        return;
    if (job->second.stage == Stage::Admitting)
        --m_admitting;
    // Its answer outlives this call: dropping may happen from within it.
    const Deliver answer = std::move(job->second.deliver);
    m_jobs.erase(job);
    if (!m_start.isPending() && !m_jobs.empty())
        m_start = m_scheduler.after(0s, this, [this] { startMore(); });
}

void MediaClient::raise(quint64 number)
{
    const auto job = m_jobs.find(number);
    if (job != m_jobs.end())
        job->second.turn = ++m_lastTurn;
}

bool MediaClient::isPending(quint64 number) const
{
    return m_jobs.find(number) != m_jobs.end();
}

MediaClient::Job *MediaClient::foremost(Stage stage)
{
    Job *first = nullptr;
    for (auto &[number, job] : m_jobs) {
        if (job.stage == stage && (!first || job.turn > first->turn))
            first = &job;
    }
    return first;
}

void MediaClient::startMore()
{
    while (Job *job = foremost(Stage::Ready)) {
        const int file = (job->admitted.cached ? job->admitted.cached : job->admitted.file).get();
        HelperRequest request = job->request;
        const bool fillsCache = job->cacheUse == CacheUse::ReadAndFill && !job->admitted.cached;
        if (fillsCache)
            request.cacheSide = static_cast<quint32>(DesktopThumbnails::sideFor(static_cast<int>(request.side)));
        request.outputLimit = outputLimitOf(request);
        if (!m_helpers.hand(job->helper, job->number, request, file))
            break;
        job->stage = Stage::Running;
    }
    const auto ready = std::count_if(m_jobs.begin(), m_jobs.end(),
                                     [](const auto &entry) { return entry.second.stage == Stage::Ready; });
    for (int room = kAdmittedAhead * m_helpers.size() - m_admitting - static_cast<int>(ready); room > 0; --room) {
        Job *job = foremost(Stage::Waiting);
        if (!job)
            return;
        job->stage = Stage::Admitting;
        ++m_admitting;
        const bool readsCache = job->cacheUse == CacheUse::ReadAndFill;
        m_admission.admit({.number = job->number,
                           .path = job->path,
                           .bytes = job->bytes,
                           .cacheSide = readsCache ? static_cast<int>(job->request.side) : 0,
                           // A thumbnail of a link is the link's; who asks about a link means what it leads to.
                           .followsLinks = isAboutFacts(job->request.command)});
        job->deadline = m_scheduler.after(kAdmissionDeadline, this, [this, number = job->number] {
            finish(number, replyOf(MediaFailure::Unreadable));
        });
    }
}

void MediaClient::takeAdmitted(quint64 number, AdmittedFile file)
{
    const auto entry = m_jobs.find(number);
    if (entry == m_jobs.end())
        return;
    Job &job = entry->second;
    job.deadline.cancel();
    --m_admitting;
    job.stage = Stage::Ready;
    job.bytes.clear();
    if (file.failure) {
        finish(number, replyOf(*file.failure));
        return;
    }
    job.admitted = std::move(file);
    startMore();
}

void MediaClient::takeReply(quint64 number, HelperReply reply)
{
    const auto entry = m_jobs.find(number);
    if (entry == m_jobs.end()) {
        startMore();
        return;
    }
    Job &job = entry->second;
    const bool isSpoiltThumbnail = job.admitted.cached && (reply.failure || reply.isDeclined);
    if (isSpoiltThumbnail || (reply.isDeclined && job.helper == HelperKind::Light)) {
        if (isSpoiltThumbnail)
            job.admitted.cached.reset();
        else
            job.helper = HelperKind::Extra;
        job.stage = Stage::Ready;
        startMore();
        return;
    }
    if (reply.isDeclined)
        reply.failure = MediaFailure::Unsupported;
    remember(job, reply);
    finish(number, std::move(reply));
}

void MediaClient::remember(Job &job, const HelperReply &reply)
{
    if (job.cacheUse == CacheUse::None || job.admitted.cached || (reply.failure && !isAboutFile(*reply.failure)))
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
    const auto entry = m_jobs.find(number);
    if (reply.failure == MediaFailure::HelperLost || reply.failure == MediaFailure::TimedOut)
        qCWarning(logMedia, "a media helper was lost on a file");
    if (entry->second.stage == Stage::Admitting)
        --m_admitting;
    // The answer may drop this or any other request, or delete the client.
    const Deliver deliver = std::move(entry->second.deliver);
    m_jobs.erase(entry);
    const QPointer<MediaClient> guard(this);
    deliver(reply);
    if (guard)
        startMore();
}

} // namespace ostrelle
