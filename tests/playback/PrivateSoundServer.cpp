#include "PrivateSoundServer.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace ostrelle {
namespace {

constexpr qsizetype kFrameSize = 2 * sizeof(float);

} // namespace

Recording::Recording(const QString &address)
{
    m_recorder.start(QStringLiteral("parec"),
                     {QStringLiteral("--server=") + address, QStringLiteral("--device=void.monitor"),
                      QStringLiteral("--format=float32ne"), QStringLiteral("--channels=2"),
                      QStringLiteral("--rate=%1").arg(PrivateSoundServer::kRate), QStringLiteral("--latency-msec=20")});
}

Recording::~Recording()
{
    m_recorder.kill();
    m_recorder.waitForFinished();
}

qsizetype Recording::size()
{
    m_bytes += m_recorder.readAllStandardOutput();
    return m_bytes.size() / kFrameSize;
}

std::vector<float> Recording::channel(qsizetype channel, qsizetype begin)
{
    const qsizetype end = size();
    std::vector<float> samples;
    samples.reserve(std::size_t(std::max<qsizetype>(0, end - begin)));
    for (qsizetype frame = begin; frame < end; ++frame) {
        float sample = 0;
        std::memcpy(&sample, m_bytes.constData() + frame * kFrameSize + channel * qsizetype(sizeof(float)),
                    sizeof sample);
        samples.push_back(sample);
    }
    return samples;
}

bool Recording::isOver(double seconds)
{
    const qsizetype tail = size() - static_cast<qsizetype>(seconds * PrivateSoundServer::kRate);
    return tail > 0 && sounding(tail) == 0 && sounding() > 0;
}

qsizetype Recording::sounding(qsizetype begin)
{
    const std::vector<float> samples = left(begin);
    return std::count_if(samples.begin(), samples.end(), [](float sample) { return sample != 0; });
}

double Recording::loudness(const std::vector<float> &samples)
{
    const double sum = std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
    return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, samples.size())));
}

PrivateSoundServer::PrivateSoundServer()
{
    const QString address = QStringLiteral("unix:") + m_folder.filePath(QStringLiteral("native"));
    qputenv("PULSE_SERVER", QFile::encodeName(address));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"})
        environment.insert(QString::fromLatin1(name), m_folder.path());
    environment.remove(QStringLiteral("PULSE_SERVER"));
    m_server.setProcessEnvironment(environment);
    m_server.setProcessChannelMode(QProcess::MergedChannels);
}

PrivateSoundServer::~PrivateSoundServer()
{
    kill();
    qunsetenv("PULSE_SERVER");
}

bool PrivateSoundServer::start()
{
    const QString socket = m_folder.filePath(QStringLiteral("native"));
    // No rewinding: what was handed over is heard within 50 ms, or thrown away.
    m_server.start(
        QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("-vv"), QStringLiteral("--daemonize=no"),
         QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
         QStringLiteral("--high-priority=no"), QStringLiteral("--realtime=no"), QStringLiteral("-L"),
         QStringLiteral("module-null-sink sink_name=void format=float32ne rate=%1 channels=2 norewinds=1").arg(kRate),
         QStringLiteral("-L"), QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket});
    return QTest::qWaitFor([this] { return log().contains("Daemon startup complete"); }, 20'000);
}

void PrivateSoundServer::kill()
{
    m_server.kill();
    m_server.waitForFinished();
    log();
    m_log.clear();
}

QByteArray PrivateSoundServer::log()
{
    return m_log += m_server.readAll();
}

std::unique_ptr<Recording> PrivateSoundServer::record() const
{
    auto recording = std::make_unique<Recording>(QString::fromLocal8Bit(qgetenv("PULSE_SERVER")));
    return QTest::qWaitFor([&recording] { return recording->size() > 0; }, 20'000) ? std::move(recording) : nullptr;
}

} // namespace ostrelle
