#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ostrelle {

/// What is known of an audio file.
struct AudioInfo
{
    QString name;                     ///< last path component
    double duration = 0;              ///< seconds; 0 when unknown
    QString format;                   ///< the ending of the name in upper case; empty when it has none
    std::optional<double> sampleRate; ///< frames per second
    std::optional<int> bitDepth;      ///< bits per channel; none of compressed streams
    std::optional<int> channels;
    std::optional<int> bitrateKbps;
    qint64 byteSize = 0;       ///< 0 when unknown
    std::optional<double> bpm; ///< the tempo that the file's tags state, beats per minute, above 0 and at most 400

    /// "03:07", from an hour on "1:02:05"; an em dash when the duration is unknown.
    QString durationString() const;
    /// "44.1 kHz", "48 kHz".
    std::optional<QString> sampleRateString() const;
    /// "Mono", "Stereo", "6 channels".
    std::optional<QString> channelsString() const;
    /// A place in a sound in whole seconds, begun ones left out, as durationString() writes them.
    static QString timeString(double seconds);
    /// "128 BPM", "127.6 BPM".
    static QString bpmString(double bpm);

    friend bool operator==(const AudioInfo &, const AudioInfo &) = default;
};

/// What a helper answers of the file at `path`: an object with "byteSize", "duration" and, as far as they are known,
/// "sampleRate", "bitDepth", "channels", "bitrateKbps" and "bpm". Nothing when it is none, states neither a duration
/// above 0 nor a sample rate, or a figure that cannot be.
std::optional<AudioInfo> audioInfoFromJson(const QByteArray &json, const QString &path);

/// A helper's answer about the tempo: an object with "bpm", or an empty one. Nothing outside 60 to 200.
std::optional<double> tempoFromJson(const QByteArray &json);

} // namespace ostrelle
