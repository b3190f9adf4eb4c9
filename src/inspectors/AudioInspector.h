#pragma once

#include "inspectors/FileInspector.h"
#include "media_client/AudioInfo.h"

#include <optional>

namespace ostrelle {

class AudioPreview;
class FactSource;

/// The audio file on display, and what is known of its tempo.
struct AudioInspection
{
    std::optional<AudioInfo> info;
    QString path;                       ///< empty without a file on display
    std::optional<double> estimatedBpm; ///< heard, not read
    bool isDetectingBpm = false;
    bool isBpmDoubled = false; ///< the user reads the tempo as double time

    /// The tempo that the file states, else the one that was heard; twice that when it is read as double time.
    std::optional<double> displayedBpm() const;
    bool isBpmEstimate() const;

    friend bool operator==(const AudioInspection &, const AudioInspection &) = default;
};

/// What the audio tool shows. A file that states no tempo is listened to. Main thread; nothing here waits.
class AudioInspector final : public FileInspector
{
    Q_OBJECT
public:
    AudioInspector(const Surroundings &surroundings, FactSource &facts, AudioPreview &preview,
                   QObject *parent = nullptr);

    /// Whether the name is that of an audio file, or of one with audio and video.
    static bool supports(const QString &path);

    const AudioInspection &inspection() const { return m_inspection.value(); }
    QBindable<AudioInspection> bindableInspection() { return &m_inspection; }

    /// Of a supported file: stops what is being played and takes the file on display away when this one cannot be read.
    void load(const QString &path) override;
    /// Stops the file on display when it is being played.
    void clear() override;
    /// Reads the tempo as double time, or no longer.
    void toggleDoubleTime();

private:
    void take(const QString &path, const std::optional<AudioInfo> &info);
    void detectTempo(const QString &path);

    FactSource &m_facts;
    AudioPreview &m_preview;
    RequestHandle m_detection;
    QProperty<AudioInspection> m_inspection;
};

} // namespace ostrelle
