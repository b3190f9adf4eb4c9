#include "command/InspectionRun.h"

#include "command/FileName.h"
#include "command/NameSource.h"
#include "foundation/AppPaths.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

namespace ostrelle {
namespace {

/// Asked for ahead of what has been told, for each helper.
constexpr int kFilesAhead = 16;

QString reasonOf(MediaFailure failure, MediaKind kind, const QByteArray &name)
{
    struct stat facts = {};
    switch (failure) {
    case MediaFailure::NotAFile:
        if (::stat(name.constData(), &facts) != 0) {
            return ::lstat(name.constData(), &facts) == 0 ? QStringLiteral("is a link that leads nowhere")
                                                          : QStringLiteral("does not exist");
        }
        return S_ISDIR(facts.st_mode) ? QStringLiteral("is a folder; --recursive looks into it")
                                      : QStringLiteral("is no file");
    case MediaFailure::Unreadable:
        return QStringLiteral("cannot be read");
    case MediaFailure::TimedOut:
        return QStringLiteral("takes too long to read");
    case MediaFailure::HelperLost:
    case MediaFailure::HelperMissing:
        return QStringLiteral("cannot be read: what was to read it failed");
    default:
        return kind == MediaKind::Audio ? QStringLiteral("holds no audio that can be read")
                                        : QStringLiteral("holds no image that can be read");
    }
}

} // namespace

struct InspectionRun::File
{
    Inspection inspection;
    QString path;
    FileDescriptor place; ///< of a file whose name Qt cannot write
    MediaRequest request;
    bool isFinished = false;
};

InspectionRun::InspectionRun(NameSource &names, int jobs, TempoUse tempoUse, Taker taker)
    : m_client(m_scheduler, {QCoreApplication::applicationDirPath(), AppPaths::thumbnails()},
               MediaClient::Helpers{.most = jobs})
    , m_names(names)
    , m_jobs(jobs)
    , m_tempoUse(tempoUse)
    , m_taker(std::move(taker))
{
    QObject::connect(&m_names, &NameSource::moreArrived, &m_client, [this] { startMore(); });
}

InspectionRun::~InspectionRun() = default;

void InspectionRun::exec()
{
    const Task start = m_scheduler.after(std::chrono::seconds(0), &m_client, [this] { startMore(); });
    QCoreApplication::exec();
}

void InspectionRun::stop()
{
    QCoreApplication::quit();
}

void InspectionRun::startMore()
{
    // A file that needs no helper finishes within the loop.
    if (std::exchange(m_isStarting, true))
        return;
    NameSource::State state = m_names.state();
    for (; state == NameSource::State::Ready; state = m_names.state()) {
        if (static_cast<int>(m_files.size()) >= kFilesAhead * m_jobs)
            break;
        File &file = *m_files.emplace_back(std::make_unique<File>());
        NameSource::Entry entry = m_names.next();
        file.inspection.file = std::move(entry.name);
        file.inspection.problem = std::move(entry.problem);
        if (file.inspection.problem.isEmpty())
            inspect(file);
        else
            finish(file);
        tell();
    }
    m_isStarting = false;
    if (m_files.empty() && state == NameSource::State::Ended)
        stop();
}

void InspectionRun::inspect(File &file)
{
    Inspection &inspection = file.inspection;
    const QByteArray &name = inspection.file;
    inspection.kind = mediaKindOf(displayName(name));
    if (!inspection.kind) {
        inspection.problem = QStringLiteral("is neither audio nor an image by its name");
        struct stat facts = {};
        if (::stat(name.constData(), &facts) != 0 || S_ISDIR(facts.st_mode))
            inspection.problem = reasonOf(MediaFailure::NotAFile, MediaKind::Audio, name);
        finish(file);
        return;
    }
    file.path = QFileInfo(QString::fromUtf8(name)).absoluteFilePath();
    if (!isText(name)) {
        file.place.reset(::open(name.constData(), O_PATH | O_CLOEXEC));
        file.path = QStringLiteral("/proc/self/fd/%1").arg(file.place.get());
    }
    if (*inspection.kind == MediaKind::Audio)
        file.request = m_client.audioInfo(file.path, [this, &file](const auto &result) { takeFacts(file, result); });
    else
        file.request = m_client.imageInfo(file.path, [this, &file](const auto &result) { takeFacts(file, result); });
}

void InspectionRun::takeFacts(File &file, const std::variant<AudioInfo, MediaFailure> &result)
{
    Inspection &inspection = file.inspection;
    if (const auto *failure = std::get_if<MediaFailure>(&result)) {
        inspection.problem = reasonOf(*failure, MediaKind::Audio, inspection.file);
    } else {
        AudioInfo &info = inspection.audio.emplace(std::get<AudioInfo>(result));
        const QFileInfo named(displayName(inspection.file));
        info.name = named.fileName();
        info.format = named.suffix().toUpper();
        if (info.bpm)
            inspection.tempo = Tempo{*info.bpm, false};
    }
    if (inspection.audio && !inspection.tempo && m_tempoUse == TempoUse::Listen)
        listen(file);
    else
        finish(file);
}

void InspectionRun::takeFacts(File &file, const std::variant<ImageInfo, MediaFailure> &result)
{
    Inspection &inspection = file.inspection;
    if (const auto *failure = std::get_if<MediaFailure>(&result))
        inspection.problem = reasonOf(*failure, MediaKind::Image, inspection.file);
    else
        inspection.image.emplace(std::get<ImageInfo>(result)).name = QFileInfo(displayName(inspection.file)).fileName();
    finish(file);
}

void InspectionRun::listen(File &file)
{
    file.request = m_client.tempo(file.path, [this, &file](std::optional<double> bpm) {
        if (bpm)
            file.inspection.tempo = Tempo{*bpm, true};
        finish(file);
    });
}

void InspectionRun::finish(File &file)
{
    file.isFinished = true;
    file.place.reset();
    if (m_isStarting)
        return;
    tell();
    startMore();
}

void InspectionRun::tell()
{
    while (!m_files.empty() && m_files.front()->isFinished) {
        const std::unique_ptr<File> file = std::move(m_files.front());
        m_files.pop_front();
        m_taker(file->inspection);
    }
}

} // namespace ostrelle
