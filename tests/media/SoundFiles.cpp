#include "SoundFiles.h"

#include "tempo/OnsetEnvelopes.h"

#include <QProcess>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ostrelle {
namespace {

template <typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

} // namespace

QByteArray wavOf(const std::vector<float> &samples)
{
    constexpr quint32 kSampleSize = 2;
    constexpr quint32 kRate = kTempoSampleRate;
    QByteArray pcm;
    for (const float sample : samples)
        pcm += littleEndian(static_cast<qint16>(std::lround(std::clamp(sample, -1.0F, 1.0F) * 32767)));
    const QByteArray format = littleEndian<quint16>(1) + littleEndian<quint16>(1) + littleEndian<quint32>(kRate) +
                              littleEndian<quint32>(kRate * kSampleSize) + littleEndian<quint16>(kSampleSize) +
                              littleEndian<quint16>(8 * kSampleSize);
    const QByteArray chunks = "WAVEfmt " + littleEndian<quint32>(quint32(format.size())) + format + "data" +
                              littleEndian<quint32>(quint32(pcm.size())) + pcm;
    return "RIFF" + littleEndian<quint32>(quint32(chunks.size())) + chunks;
}

void convertSound(const QString &source, const QString &target, const QStringList &options)
{
    const QStringList quiet{QStringLiteral("-loglevel"), QStringLiteral("error"), QStringLiteral("-nostdin"),
                            QStringLiteral("-y"), QStringLiteral("-i")};
    if (QProcess::execute(QStringLiteral("ffmpeg"), quiet + QStringList{source} + options + QStringList{target}) != 0)
        std::abort();
}

} // namespace ostrelle
