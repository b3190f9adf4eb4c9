#pragma once

#include "foundation/SnapshotFile.h"

#include <QJsonArray>
#include <QList>
#include <QString>

#include <optional>

namespace ostrelle {

/// A list of records in a file of its own: one compact JSON array, an object per record in list order. `Record` has
/// fromJson() and toJson(). One malformed element makes the whole file undecodable: the list starts empty, the file
/// stays untouched until the next save and is kept aside then. Main thread; only load() and flush() wait for the disk.
template <typename Record>
class JsonListStore
{
public:
    /// `what` names the list in log lines: "The shelf".
    JsonListStore(const QString &path, const QString &what);

    QList<Record> load();
    /// Encodes and writes the snapshot in the background; the latest one wins.
    void save(const QList<Record> &records);
    /// Waits until everything is on the disk, trying once more what failed; false when that fails too.
    bool flush();
};

} // namespace ostrelle
