#include "media_client/Playback.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "media_client/PlayerProcess.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logPlayback, "ostrelle.media.playback")

/// From the wish to the first sample, opening the file and starting a second player included.
constexpr auto kStartDeadline = 3s;
/// Without a word of a player that plays.
constexpr auto kSilenceDeadline = 5s;

/// The endings of what the light player knows. Only a guess at which is started: it declines what is something else.
constexpr std::array kLightEndings{QLatin1String("aif"),  QLatin1String("aifc"), QLatin1String("aiff"),
                                   QLatin1String("caf"),  QLatin1String("flac"), QLatin1String("mp3"),
                                   QLatin1String("oga"),  QLatin1String("ogg"),  QLatin1String("opus"),
                                   QLatin1String("rf64"), QLatin1String("wav"),  QLatin1String("wave")};

bool isLightName(const QString &path)
{
    const QString ending = QFileInfo(path).suffix().toLower();
    return std::find(kLightEndings.begin(), kLightEndings.end(), ending) != kLightEndings.end();
}

QString executableIn(const QString &folder, bool isLight)
{
    return folder + (isLight ? QLatin1String("/ostrelle-media-play") : QLatin1String("/ostrelle-media-play-extra"));
}

const char *wordsFor(PlaybackError error)
{
    switch (error) {
    case PlaybackError::NoSoundServer:
        return "there is no sound server";
    case PlaybackError::SoundServerLost:
        return "the sound server went away";
    case PlaybackError::TimedOut:
        return "the player does not answer";
    case PlaybackError::PlayerLost:
        return "the player died, or could not be started";
    default:
        return "the file cannot be played";
    }
}

PlaybackError errorOf(PlaybackFailure failure)
{
    switch (failure) {
    case PlaybackFailure::NoServer:
        return PlaybackError::NoSoundServer;
    case PlaybackFailure::ServerLost:
        return PlaybackError::SoundServerLost;
    default:
        return PlaybackError::Unplayable;
    }
}

} // namespace

Playback::Playback(TaskScheduler &scheduler, QString helpers, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_helpers(std::move(helpers))
    , m_admission(DesktopThumbnails(QString()),
                  [this](quint64 number, AdmittedFile file) { takeFile(number, std::move(file)); })
{
}

Playback::~Playback() = default;

bool Playback::isInstalled(const QString &helpers)
{
    return QFileInfo(usualPlayer(helpers)).isExecutable();
}

QString Playback::usualPlayer(const QString &helpers)
{
    return executableIn(helpers, /*isLight=*/true);
}

void Playback::start(const QString &path)
{
    stop();
    FileAdmission::Wish wish;
    wish.number = m_number;
    wish.path = path;
    wish.followsLinks = true;
    m_admission.admit(wish);
    run(isLightName(path) ? Player::Light : Player::Extra);
    m_deadline = m_scheduler.after(kStartDeadline, this, [this] { fail(PlaybackError::TimedOut); });
}

void Playback::run(Player player)
{
    if (m_process)
        m_process->retire();
    m_player = player;
    m_process = &makeChild<PlayerProcess>(this, executableIn(m_helpers, player == Player::Light));
    connect(m_process, &PlayerProcess::reported, this, &Playback::takeReport);
    connect(m_process, &PlayerProcess::lost, this, [this] { fail(PlaybackError::PlayerLost); });
}

void Playback::takeFile(quint64 number, AdmittedFile file)
{
    if (number != m_number || !m_process)
        return;
    if (file.failure) {
        fail(PlaybackError::Unreadable);
        return;
    }
    m_file = std::move(file.file);
    handOver();
}

void Playback::handOver()
{
    // A player that is gone is told by its socket.
    m_process->play(m_file.get());
    if (m_wantedPlace)
        m_process->seek(*m_wantedPlace, m_lastSeek);
}

void Playback::seek(double seconds)
{
    if (!m_process)
        return;
    ++m_lastSeek;
    m_wantedPlace = seconds;
    if (m_file)
        m_process->seek(seconds, m_lastSeek);
}

void Playback::stop()
{
    ++m_number;
    m_deadline.cancel();
    m_file.reset();
    m_lastSeek = 0;
    m_wantedPlace.reset();
    if (PlayerProcess *process = std::exchange(m_process, nullptr))
        process->retire();
}

void Playback::takeReport(const PlaybackReport &report)
{
    switch (report.event) {
    case PlaybackEvent::Connected:
        break;
    case PlaybackEvent::Started:
        watch();
        Q_EMIT started(report.length);
        break;
    case PlaybackEvent::Moved:
        watch();
        // What was said before it went where it was sent would make the position jump back.
        if (report.seek == m_lastSeek)
            Q_EMIT moved(report.position);
        break;
    case PlaybackEvent::Ended:
        stop();
        Q_EMIT ended();
        break;
    case PlaybackEvent::Declined:
        if (m_player == Player::Extra) {
            fail(PlaybackError::Unplayable);
            break;
        }
        run(Player::Extra);
        handOver();
        break;
    case PlaybackEvent::Failed:
        fail(errorOf(report.failure));
        break;
    }
}

void Playback::watch()
{
    m_deadline = m_scheduler.after(kSilenceDeadline, this, [this] { fail(PlaybackError::TimedOut); });
}

void Playback::fail(PlaybackError error)
{
    stop();
    if (error != PlaybackError::Unreadable && error != PlaybackError::Unplayable)
        qCWarning(logPlayback, "%s", wordsFor(error));
    Q_EMIT failed(error);
}

} // namespace ostrelle
