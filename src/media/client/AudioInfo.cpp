#include "media_client/AudioInfo.h"

#include "media_client/FactAnswers.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrelle {
namespace {

constexpr double kSecondsPerMinute = 60;
constexpr double kSecondsPerHour = 3600;
constexpr double kHighestTempoTag = 400;
constexpr double kLowestTempo = 60;
constexpr double kHighestTempo = 200;
/// A thousand years: what is longer is a lie.
constexpr double kLongestDuration = 1000 * 365.25 * 86400;
/// Beyond what any file system holds, and whole as a double.
constexpr double kLargestFile = 9007199254740992;

bool isWhole(double value)
{
    return value == std::floor(value);
}

QString clockText(qint64 seconds)
{
    const qint64 hours = seconds / static_cast<qint64>(kSecondsPerHour);
    const qint64 minutes = seconds / static_cast<qint64>(kSecondsPerMinute) % 60;
    const QString tail =
        QStringLiteral("%1:%2").arg(minutes, 2, 10, QLatin1Char('0')).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    return hours > 0 ? QStringLiteral("%1:%2").arg(hours).arg(tail) : tail;
}

} // namespace

QString AudioInfo::durationString() const
{
    return std::isfinite(duration) && duration > 0 ? clockText(static_cast<qint64>(std::round(duration)))
                                                   : QStringLiteral("—");
}

QString AudioInfo::timeString(double seconds)
{
    return clockText(static_cast<qint64>(std::clamp(seconds, 0.0, kLongestDuration)));
}

std::optional<QString> AudioInfo::sampleRateString() const
{
    if (!sampleRate || !(*sampleRate > 0))
        return std::nullopt;
    const double kilo = *sampleRate / 1000;
    return QString::number(kilo, 'f', isWhole(kilo) ? 0 : 1) + QStringLiteral(" kHz");
}

std::optional<QString> AudioInfo::channelsString() const
{
    if (!channels || *channels <= 0)
        return std::nullopt;
    if (*channels == 1)
        return QStringLiteral("Mono");
    return *channels == 2 ? QStringLiteral("Stereo") : QStringLiteral("%1 channels").arg(*channels);
}

QString AudioInfo::bpmString(double bpm)
{
    return QString::number(bpm, 'f', isWhole(bpm) ? 0 : 1) + QStringLiteral(" BPM");
}

std::optional<AudioInfo> audioInfoFromJson(const QByteArray &json, const QString &path)
{
    const std::optional<QJsonObject> object = answerObject(json);
    if (!object)
        return std::nullopt;
    constexpr int kMost = std::numeric_limits<int>::max();
    const QFileInfo file(path);
    AudioInfo info;
    info.name = file.fileName();
    info.format = file.suffix().toUpper();
    info.duration = numberIn(*object, u"duration", 0, kLongestDuration).value_or(0);
    info.sampleRate = numberIn(*object, u"sampleRate", 0, kMost);
    info.bitDepth = wholeNumberIn(*object, u"bitDepth", 1, 1024);
    info.channels = wholeNumberIn(*object, u"channels", 0, kMost);
    info.bitrateKbps = wholeNumberIn(*object, u"bitrateKbps", 0, kMost);
    info.byteSize = static_cast<qint64>(numberIn(*object, u"byteSize", 0, kLargestFile).value_or(0));
    info.bpm = numberIn(*object, u"bpm", std::numeric_limits<double>::min(), kHighestTempoTag);
    return info.duration > 0 || info.sampleRate ? std::optional(info) : std::nullopt;
}

std::optional<double> tempoFromJson(const QByteArray &json)
{
    const std::optional<QJsonObject> object = answerObject(json);
    return object ? numberIn(*object, u"bpm", kLowestTempo, kHighestTempo) : std::nullopt;
}

} // namespace ostrelle
