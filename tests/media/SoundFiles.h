#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace ostrelle {

/// A WAV file of 16-bit samples, one channel at kTempoSampleRate.
QByteArray wavOf(const std::vector<float> &samples);

/// Makes `target` of `source`, by the ending of its name and FFmpeg's options.
void convertSound(const QString &source, const QString &target, const QStringList &options = {});

} // namespace ostrelle
