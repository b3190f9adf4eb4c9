#include "Sounds.h"

#include "PrivateSoundServer.h"

#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QProcess>
#include <QStringList>

#include <cmath>
#include <cstdlib>
#include <numeric>

namespace ostrelle {
namespace {

constexpr float kSteps = 1 << 24;

QByteArray wavHeader(qint64 frames, qint64 statedFrames)
{
    constexpr quint32 kFrameSize = 8;
    const auto size = static_cast<quint32>((statedFrames < 0 ? frames : statedFrames) * kFrameSize);
    QByteArray header;
    QDataStream stream(&header, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    const auto mark = [&](const char *name) { stream.writeRawData(name, 4); };
    mark("RIFF");
    stream << quint32(36 + size);
    mark("WAVE");
    mark("fmt ");
    stream << quint32(16) << quint16(3) << quint16(2) << quint32(PrivateSoundServer::kRate)
           << quint32(PrivateSoundServer::kRate * kFrameSize) << quint16(kFrameSize) << quint16(32);
    mark("data");
    stream << size;
    return header;
}

} // namespace

float countingSample(qint64 frame)
{
    return static_cast<float>(frame + 1) / kSteps;
}

qint64 placeOf(float sample)
{
    return static_cast<qint64>(std::lround(sample * kSteps)) - 1;
}

void writeCountingSound(const QString &path, qint64 frames, qint64 first, qint64 statedFrames)
{
    QByteArray bytes = wavHeader(frames, statedFrames);
    std::vector<float> samples;
    for (qint64 frame = first; frame < first + frames; ++frame)
        samples.insert(samples.end(), {countingSample(frame), -countingSample(frame)});
    bytes.append(reinterpret_cast<const char *>(samples.data()), qsizetype(samples.size() * sizeof(float)));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
}

std::vector<float> sweep(double seconds)
{
    std::vector<float> samples(static_cast<std::size_t>(seconds * PrivateSoundServer::kRate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double t = static_cast<double>(i) / PrivateSoundServer::kRate;
        samples[i] = static_cast<float>(0.3 * std::sin(2 * M_PI * (300 * t + 250 * t * t)) +
                                        0.3 * std::sin(2 * M_PI * (4000 * t - 200 * t * t)));
    }
    return samples;
}

bool encodeSweep(const QString &path, double seconds, const QStringList &options)
{
    QProcess encoder;
    const QStringList input{QStringLiteral("-v"),  QStringLiteral("error"),
                            QStringLiteral("-f"),  QStringLiteral("f32le"),
                            QStringLiteral("-ar"), QString::number(PrivateSoundServer::kRate),
                            QStringLiteral("-ac"), QStringLiteral("1"),
                            QStringLiteral("-i"),  QStringLiteral("-")};
    const QStringList output{QStringLiteral("-ac"), QStringLiteral("2"), QStringLiteral("-y"), path};
    encoder.start(QStringLiteral("ffmpeg"), input + options + output);
    const std::vector<float> samples = sweep(seconds);
    encoder.write(reinterpret_cast<const char *>(samples.data()), qint64(samples.size() * sizeof(float)));
    encoder.closeWriteChannel();
    return encoder.waitForFinished() && encoder.exitCode() == 0;
}

qsizetype placeOfPart(const std::vector<float> &sound, qsizetype begin, const std::vector<float> &heard)
{
    constexpr std::size_t kPart = PrivateSoundServer::kRate / 20;
    constexpr double kLikeEnough = 0.8;
    const float *part = sound.data() + begin;
    const double own = std::inner_product(part, part + kPart, part, 0.0);
    double best = kLikeEnough;
    qsizetype found = -1;
    for (std::size_t place = 0; place + kPart <= heard.size(); ++place) {
        const float *other = heard.data() + place;
        const double product = std::inner_product(part, part + kPart, other, 0.0);
        if (product <= 0)
            continue;
        const double likeness = product / std::sqrt(own * std::inner_product(other, other + kPart, other, 0.0));
        if (likeness > best) {
            best = likeness;
            found = static_cast<qsizetype>(place);
        }
    }
    return found;
}

} // namespace ostrelle
