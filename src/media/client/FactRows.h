#pragma once

#include "media_client/AudioInfo.h"
#include "media_client/ImageInfo.h"

#include <QList>
#include <QString>

#include <optional>

namespace ostrelle {

/// One fact as it is shown: "Sample Rate", "44.1 kHz".
struct FactRow
{
    QString label;
    QString value;

    friend bool operator==(const FactRow &, const FactRow &) = default;
};

/// A tempo, and where it comes from.
struct Tempo
{
    double bpm = 0;
    bool isEstimate = false; ///< heard, not read from a tag

    /// "128 BPM", "≈ 124 BPM".
    QString text() const;

    friend bool operator==(const Tempo &, const Tempo &) = default;
};

/// The facts that are known, in the order of the tool, without the tempo.
QList<FactRow> rowsOf(const AudioInfo &info);
QList<FactRow> rowsOf(const ImageInfo &info);
/// The row of the tempo.
FactRow rowOf(const Tempo &tempo);

} // namespace ostrelle
