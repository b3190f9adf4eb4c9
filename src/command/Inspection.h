#pragma once

#include "media_client/AudioInfo.h"
#include "media_client/FactRows.h"
#include "media_client/ImageInfo.h"
#include "media_client/MediaKind.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace ostrelle {

/// What became of one file.
struct Inspection
{
    QByteArray file; ///< its name as it was given
    std::optional<MediaKind> kind;
    std::optional<AudioInfo> audio;
    std::optional<ImageInfo> image;
    std::optional<Tempo> tempo;
    QString problem; ///< why there are no facts; a phrase that follows the name, "does not exist"

    bool isDone() const { return audio || image; }
};

/// The name, and below it a line for each row of the tool.
QString inspectionText(const Inspection &inspection);
/// One object on one line.
QString inspectionJson(const Inspection &inspection);

} // namespace ostrelle
