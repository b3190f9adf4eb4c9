#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace ostrelle {

/// What a sound server of the test's own played, sample by sample, in two channels at kRate.
class Recording
{
public:
    explicit Recording(const QString &address);
    ~Recording();

    /// Frames so far; reads what has come.
    qsizetype size();
    /// One channel from frame `begin` on.
    std::vector<float> left(qsizetype begin = 0) { return channel(0, begin); }
    std::vector<float> right(qsizetype begin = 0) { return channel(1, begin); }
    /// The last so many seconds were silent, and something was heard before.
    bool isOver(double seconds = 0.3);
    /// How many of the frames from `begin` on are not silent.
    qsizetype sounding(qsizetype begin = 0);
    /// Root of the mean square.
    static double loudness(const std::vector<float> &samples);

private:
    std::vector<float> channel(qsizetype channel, qsizetype begin);

    QProcess m_recorder;
    QByteArray m_bytes;
};

/// A PulseAudio server with nothing but a sink into the void, in a folder of its own. While it lives this process's
/// players find it.
class PrivateSoundServer
{
public:
    static constexpr int kRate = 48'000;

    PrivateSoundServer();
    ~PrivateSoundServer();

    /// Starts it (again), and waits until it listens.
    bool start();
    /// As when it crashes.
    void kill();
    /// What it has said so far.
    QByteArray log();
    std::unique_ptr<Recording> record() const;

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    QByteArray m_log;
};

} // namespace ostrelle
