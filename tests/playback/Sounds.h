#pragma once

#include <QString>

#include <vector>

namespace ostrelle {

/// The float of the frame at this place in a counting sound: exact, and never silence.
float countingSample(qint64 frame);
/// The place that a sample of a counting sound has; -1 for silence.
qint64 placeOf(float sample);

/// Writes a WAV file of floats in two channels at PrivateSoundServer::kRate, whose samples tell their own places,
/// beginning at `first`. The header states `statedFrames` where that is not -1.
void writeCountingSound(const QString &path, qint64 frames, qint64 first = 0, qint64 statedFrames = -1);

/// A sound that survives lossy coding and is like itself at no other place: `seconds` of a rising tone over a falling
/// one.
std::vector<float> sweep(double seconds);
/// Has FFmpeg encode the sweep with its `options`.
bool encodeSweep(const QString &path, double seconds, const QStringList &options);
/// The frame in `heard` at which the part of `sound` from frame `begin` on, a twentieth of a second, is to be found, as
/// far as it is like it; -1 when it is not there.
qsizetype placeOfPart(const std::vector<float> &sound, qsizetype begin, const std::vector<float> &heard);

} // namespace ostrelle
