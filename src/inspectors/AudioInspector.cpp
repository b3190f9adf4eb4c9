#include "inspectors/AudioInspector.h"

#include "files/AudioPreview.h"
#include "inspectors/FactSource.h"
#include "media_client/MediaKind.h"
#include "records/RecentFile.h"

namespace ostrelle {

std::optional<double> AudioInspection::displayedBpm() const
{
    const std::optional<double> bpm = info && info->bpm ? info->bpm : estimatedBpm;
    if (!bpm)
        return std::nullopt;
    return isBpmDoubled ? *bpm * 2 : *bpm;
}

bool AudioInspection::isBpmEstimate() const
{
    return !(info && info->bpm) && estimatedBpm;
}

AudioInspector::AudioInspector(const Surroundings &surroundings, FactSource &facts, AudioPreview &preview,
                               QObject *parent)
    : FileInspector(surroundings, QString(kAudioRecentsKey), parent)
    , m_facts(facts)
    , m_preview(preview)
{
}

bool AudioInspector::supports(const QString &path)
{
    return mediaKindOf(path) == MediaKind::Audio;
}

void AudioInspector::load(const QString &path)
{
    if (!supports(path)) {
        reject();
        return;
    }
    m_preview.stop();
    // Whatever becomes of this file, it takes the place of the one that is listened to.
    m_detection.cancel();
    awaitFacts(m_facts.audioInfo(path, [this, path](const auto &info) { take(QString(path), info); }),
               [this, path] { take(QString(path), std::nullopt); });
}

void AudioInspector::take(const QString &path, const std::optional<AudioInfo> &info)
{
    AudioInspection shown;
    if (info) {
        shown.info = info;
        shown.path = path;
        shown.isDetectingBpm = !info->bpm;
    }
    settle();
    m_inspection = shown;
    if (!shown.info) {
        reject();
        return;
    }
    accept(shown.path, shown.info->durationString() + QStringLiteral(" · ") + shown.info->format);
    if (shown.isDetectingBpm)
        detectTempo(shown.path);
}

void AudioInspector::detectTempo(const QString &path)
{
    m_detection = m_facts.tempo(path, [this](std::optional<double> bpm) {
        AudioInspection heard = inspection();
        heard.estimatedBpm = bpm;
        heard.isDetectingBpm = false;
        m_inspection = heard;
    });
}

void AudioInspector::clear()
{
    abandon();
    m_detection.cancel();
    if (!inspection().path.isEmpty())
        m_preview.stop(inspection().path);
    m_inspection = AudioInspection();
}

void AudioInspector::toggleDoubleTime()
{
    AudioInspection read = inspection();
    read.isBpmDoubled = !read.isBpmDoubled;
    m_inspection = read;
}

} // namespace ostrelle
