#include "inspectors/AudioPreviewService.h"

#include "platform/AlertSound.h"
#include "platform/Haptics.h"

#include <algorithm>
#include <limits>

namespace ostrelle {

AudioPreviewService::AudioPreviewService(TaskScheduler &scheduler, const QString &helpers, Haptics &haptics,
                                         AlertSound &alert, QObject *parent)
    : AudioPreview(parent)
    , m_haptics(haptics)
    , m_alert(alert)
    , m_playback(scheduler, helpers)
{
    connect(&m_playback, &Playback::started, this, [this](double length) {
        m_haptics.tick();
        m_length = length;
    });
    connect(&m_playback, &Playback::moved, this, &AudioPreviewService::setPosition);
    connect(&m_playback, &Playback::ended, this, &AudioPreviewService::clear);
    connect(&m_playback, &Playback::failed, this, &AudioPreviewService::fail);
}

void AudioPreviewService::toggle(const QString &path)
{
    const bool isPlaying = playingPath() == path;
    stop();
    if (isPlaying || path.isEmpty())
        return;
    m_playback.start(path);
    m_playingPath = path;
}

void AudioPreviewService::stop(const QString &path)
{
    if (playingPath() == path)
        stop();
}

void AudioPreviewService::stop()
{
    m_playback.stop();
    clear();
}

void AudioPreviewService::seek(double seconds)
{
    if (playingPath().isEmpty())
        return;
    setPosition(seconds);
    m_playback.seek(position());
}

void AudioPreviewService::clear()
{
    m_playingPath = QString();
    m_position = 0;
    m_length = 0;
}

/// A length may be a guess, a position is none.
void AudioPreviewService::setPosition(double seconds)
{
    const double most = m_length > 0 ? m_length.value() : std::numeric_limits<double>::max();
    m_position = std::clamp(seconds, 0.0, most);
}

void AudioPreviewService::fail()
{
    const QString path = playingPath();
    clear();
    m_alert.sound();
    Q_EMIT failed(path);
}

} // namespace ostrelle
