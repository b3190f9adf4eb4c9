#include "media_client/PlayerProcess.h"

#include "foundation/MakeChild.h"
#include "media_client/HelperConnection.h"

#include <QPointer>

#include <array>
#include <cmath>
#include <cstring>

namespace ostrelle {
namespace {

constexpr qsizetype kReportsAtOnce = 16;
constexpr double kMostSeconds = 1e9;

/// Where libpulse finds the user's sound server.
constexpr std::array kServerVariables{"XDG_RUNTIME_DIR",    "PULSE_SERVER",    "PULSE_SINK",
                                      "PULSE_COOKIE",       "PULSE_PROP",      "PULSE_CLIENTCONFIG",
                                      "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"};

bool isTime(double seconds)
{
    return std::isfinite(seconds) && seconds >= 0 && seconds <= kMostSeconds;
}

bool isSound(const PlaybackReport &report)
{
    return report.magic == kPlaybackMagic && report.event >= PlaybackEvent::Connected &&
           report.event <= PlaybackEvent::Failed && report.failure <= PlaybackFailure::OutOfMemory &&
           isTime(report.position) && isTime(report.length);
}

} // namespace

PlayerProcess::PlayerProcess(const QString &executable, QObject *parent)
    : QObject(parent)
    , m_connection(makeChild<HelperConnection>(this, executable, HelperPriority::Usual,
                                               std::span<const char *const>(kServerVariables)))
{
    connect(&m_connection, &HelperConnection::readable, this, &PlayerProcess::receive);
}

bool PlayerProcess::play(int file)
{
    PlaybackCommand command;
    command.order = PlaybackOrder::Play;
    return m_connection.send(&command, sizeof command, file);
}

bool PlayerProcess::seek(double seconds, quint32 number)
{
    PlaybackCommand command;
    command.order = PlaybackOrder::Seek;
    command.number = number;
    command.seconds = seconds;
    return m_connection.send(&command, sizeof command);
}

void PlayerProcess::receive()
{
    constexpr qsizetype kSize = sizeof(PlaybackReport);
    const bool isThere = m_connection.receive(m_received, kReportsAtOnce * kSize);
    // Whoever listens may delete this object.
    const QPointer<PlayerProcess> guard(this);
    while (guard && m_received.size() >= kSize) {
        PlaybackReport report;
        std::memcpy(&report, m_received.constData(), sizeof report);
        m_received.remove(0, kSize);
        if (!isSound(report)) {
            m_connection.stopReading();
            Q_EMIT lost();
            return;
        }
        Q_EMIT reported(report);
    }
    if (guard && !isThere)
        Q_EMIT lost();
}

void PlayerProcess::retire()
{
    disconnect();
    m_received.clear();
    // It outlives this object until its process is gone.
    m_connection.setParent(parent());
    m_connection.retire();
    deleteLater();
}

} // namespace ostrelle
