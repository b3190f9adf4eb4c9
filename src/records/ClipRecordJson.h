#pragma once

#include "records/ClipItem.h"

#include <QJsonObject>

#include <optional>

namespace ostrelle {

/// The record as it is stored, without the bytes of an image.
QJsonObject clipRecordJson(const ClipItem &item);
/// The inverse; an image's size is unknown then. Nothing when a required key is missing or wrong.
std::optional<ClipItem> clipItemFromRecordJson(const QJsonObject &record);

} // namespace ostrelle
