#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

namespace ostrelle {

/// Text chunks of a PNG file by their keys.
using PngMarks = QHash<QByteArray, QByteArray>;

/// Reads the tEXt and zTXt chunks with the given keys, without decoding or believing anything else of the file. Empty
/// when it is no PNG file, or one that makes no sense. Any thread.
PngMarks readPngMarks(int descriptor, const QByteArrayList &keys);

} // namespace ostrelle
