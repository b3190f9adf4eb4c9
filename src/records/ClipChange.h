#pragma once

#include "records/StoredClip.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QUuid>

#include <optional>
#include <variant>

namespace ostrelle {

/// One step from a list of records to the next, as the journal knows it. Where a foreign file uses an id twice, Moved
/// and Pinned mean its first record, Removed means all.
namespace ClipChange {
struct Inserted ///< at the top
{
    QUuid id;
};
struct Moved ///< to the top
{
    QUuid id;
    double date = 0;
};
struct Pinned
{
    QUuid id;
    bool pinned = false;
};
struct Removed
{
    QList<QUuid> ids;
};
using Any = std::variant<Inserted, Moved, Pinned, Removed>;
} // namespace ClipChange

/// Applies a change to a list. They answer whether there was something to change.
bool moveToTop(StoredClips &clips, const ClipChange::Moved &change);
bool setPinned(StoredClips &clips, const ClipChange::Pinned &change);
/// Takes the records out and returns them in list order.
StoredClips take(StoredClips &clips, const ClipChange::Removed &change);

/// The first record with this id, or null.
StoredClip *findClip(StoredClips &clips, const QUuid &id);

/// The line of the journal without its line feed; of Inserted, what stands around the record.
QByteArray changeLine(const ClipChange::Moved &change);
QByteArray changeLine(const ClipChange::Pinned &change);
QByteArray changeLine(const ClipChange::Removed &change);
inline constexpr QByteArrayView kInsertedBefore = "{\"insert\":";
inline constexpr QByteArrayView kInsertedAfter = "}";

/// Reads a line that is no insertion; nothing when it is none of ours.
std::optional<ClipChange::Any> parseChange(QByteArrayView line);

/// What tells two states of the history apart: ids, dates and pins in list order. Contents need not be looked at, since
/// they never change under an id.
QByteArray fingerprint(const StoredClips &clips);

} // namespace ostrelle
