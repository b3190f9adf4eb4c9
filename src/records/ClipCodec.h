#pragma once

#include "records/StoredClip.h"

#include <QByteArray>

#include <optional>

namespace ostrelle {

/// A record's JSON object around its value: `before` + value + `after` is the object.
struct ClipFrame
{
    QByteArray before;
    QByteArray after;
};

ClipFrame clipFrame(const ClipItem &item, bool hasImageData);

/// The value of a new record: Base64 of `image` when the item is one, else its text as the inside of a JSON string.
QByteArray encodedValue(const ClipItem &item, const QByteArray &image);

/// The inside of a JSON string without its escapes. Only a foreign writer escapes what Base64 consists of.
QByteArray unescapedBase64(const QByteArray &value);
/// The image bytes that a value stands for; nothing when it is no Base64.
std::optional<QByteArray> decodedImage(const QByteArray &value);

/// The shortest text that reads back as exactly this number.
QByteArray dateText(double date);

} // namespace ostrelle
