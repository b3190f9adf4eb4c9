#include "media_player/Player.h"

#include "media_player/SoundServer.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/rtclock.h>
#include <pulse/timeval.h>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr pa_usec_t kReportInterval = 100 * PA_USEC_PER_MSEC;
/// What is decoded at once, so that commands are never kept waiting.
constexpr int kPortionsPerSecond = 10;
constexpr std::size_t kLargestPortion = 256 * 1024;

} // namespace

Player::Player(SoundServer &server, ProgramLink &link, AudioStream &sound, SoundOutput &output)
    : m_server(server)
    , m_link(link)
    , m_sound(sound)
    , m_output(output)
{
    setTimer();
}

Player::~Player()
{
    pa_mainloop_get_api(&m_server.loop())->time_free(m_timer);
}

void Player::setTimer()
{
    const pa_usec_t time = pa_rtclock_now() + kReportInterval;
    if (m_timer) {
        pa_context_rttime_restart(&m_server.context(), m_timer, time);
        return;
    }
    m_timer = pa_context_rttime_new(
        &m_server.context(), time,
        [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
            static_cast<Player *>(self)->m_isTimeUp = true;
        },
        this);
}

void Player::play()
{
    while (!m_link.isClosed() && !m_output.isLost()) {
        if (const std::optional<PlaybackCommand> seek = m_link.takeSeek())
            goTo(*seek);
        const std::size_t wanted = m_isWritten ? 0 : m_output.wantedSamples();
        if (wanted > 0)
            writeMore(wanted);
        if (m_output.isDrained()) {
            ProgramLink::report(reportOf(PlaybackEvent::Ended));
            return;
        }
        if (m_isTimeUp) {
            m_isTimeUp = false;
            m_output.askDelay();
            setTimer();
        }
        if (const std::optional<std::int64_t> delay = m_output.takeDelay())
            reportPosition(*delay);
        if (wanted > 0)
            m_server.handleEvents();
        else
            m_server.waitForEvents();
    }
    if (!m_link.isClosed()) {
        PlaybackReport report = reportOf(PlaybackEvent::Failed);
        report.failure = PlaybackFailure::ServerLost;
        ProgramLink::report(report);
    }
}

void Player::goTo(const PlaybackCommand &command)
{
    const std::int64_t length = m_sound.format().frames;
    const double wanted = std::isfinite(command.seconds) ? command.seconds * m_sound.format().sampleRate : 0;
    const double latest = length >= 0 ? static_cast<double>(length) : 1e15;
    const std::int64_t frame = std::llround(std::clamp(wanted, 0.0, latest));
    m_seek = command.number;
    m_output.discard();
    m_isWritten = false;
    if (!moveSound(frame))
        finishWriting();
    ProgramLink::reportIfHeard(reportOf(PlaybackEvent::Moved));
}

/// Not every file can be gone about in: then it goes on from where it was. False when not even that can be.
bool Player::moveSound(std::int64_t frame)
{
    const bool isAtEnd = m_sound.format().frames >= 0 && frame >= m_sound.format().frames;
    const std::int64_t before = m_next;
    m_begin = m_next = frame;
    if (isAtEnd)
        return false;
    if (m_sound.seek(frame))
        return true;
    m_begin = m_next = before;
    return m_sound.seek(before);
}

void Player::writeMore(std::size_t wantedSamples)
{
    const AudioFormat &format = m_sound.format();
    const auto channels = static_cast<std::size_t>(format.channels);
    const auto portion = std::max<std::size_t>(1, static_cast<std::size_t>(format.sampleRate / kPortionsPerSecond));
    const std::size_t frames =
        std::min({std::max<std::size_t>(1, wantedSamples / channels), portion, kLargestPortion / channels});
    m_portion.resize(frames * channels);
    const std::size_t count = m_sound.read(m_portion);
    if (count == 0) {
        finishWriting();
        return;
    }
    m_portion.resize(count * channels);
    // A file may hold what no loudspeaker should get.
    for (float &sample : m_portion)
        sample = std::isnan(sample) ? 0 : std::clamp(sample, -1.0F, 1.0F);
    m_output.write(m_portion);
    m_next += static_cast<std::int64_t>(count);
    if (!std::exchange(m_hasStarted, true))
        ProgramLink::report(reportOf(PlaybackEvent::Started));
}

void Player::finishWriting()
{
    m_isWritten = true;
    m_output.drain();
}

void Player::reportPosition(std::int64_t delay)
{
    const std::int64_t waiting = delay * m_sound.format().sampleRate / static_cast<std::int64_t>(PA_USEC_PER_SEC);
    PlaybackReport report = reportOf(PlaybackEvent::Moved);
    report.position = secondsAt(std::max(m_begin, m_next - waiting));
    ProgramLink::reportIfHeard(report);
}

PlaybackReport Player::reportOf(PlaybackEvent event) const
{
    PlaybackReport report;
    report.event = event;
    report.seek = m_seek;
    report.position = secondsAt(event == PlaybackEvent::Ended ? m_next : m_begin);
    report.length = secondsAt(std::max<std::int64_t>(m_sound.format().frames, 0));
    return report;
}

double Player::secondsAt(std::int64_t frame) const
{
    return static_cast<double>(frame) / m_sound.format().sampleRate;
}

} // namespace ostrelle
