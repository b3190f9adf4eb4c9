#pragma once

#include "foundation/FileDescriptor.h"
#include "records/ClipItem.h"

#include <QByteArray>

#include <deque>
#include <memory>
#include <optional>

namespace ostrelle {

/// A range of bytes of a file.
struct ByteSpan
{
    qint64 offset = 0;
    qint64 length = 0;

    qint64 end() const { return offset + length; }
};

/// A record of the history together with where its bytes lie.
///
/// `value` is the inside of its one long JSON string (the Base64 of the image, else the text). It never changes while
/// the record lives, so it is encoded once and afterwards only copied from file to file.
struct StoredClip
{
    ClipItem item;
    bool hasImageData = false;

    /// Until it is written: the value in memory.
    QByteArray pendingValue;

    /// Once it is written. Shared by all records of one file: array and journal are replaced while records that left
    /// the list may still be brought back from the unlinked file, and the last record closes it.
    std::shared_ptr<const FileDescriptor> file;
    ByteSpan record; ///< the whole JSON object
    ByteSpan value;  ///< inside `record`
    /// The object in the file says what `item` says, compactly: it can be copied as it lies.
    bool isCurrent = true;
};

/// The records in list order.
using StoredClips = std::deque<StoredClip>;

} // namespace ostrelle
