#pragma once

#include "foundation/SnapshotFile.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <functional>
#include <optional>

namespace ostrelle {

/// The per-user typed key-value file: one JSON object keyed by dotted names. Tells a missing key from a stored one and
/// keeps types; a binary value is {"$data": "BASE64"}. Every change is in memory at once and on the disk soon after
/// (serial queue, latest snapshot wins, atomic); a write that fails is logged once per cause and tried again with the
/// next change and by flush(). A file that cannot be decoded counts as empty, stays untouched until the next write and
/// is then kept aside. Main thread.
class DefaultsDatabase
{
public:
    explicit DefaultsDatabase(const QString &path);
    ~DefaultsDatabase();

    /// The stored value, or nothing when the key is missing.
    std::optional<QJsonValue> value(const QString &key) const;
    void setValue(const QString &key, const QJsonValue &value);
    void remove(const QString &key);

    std::optional<QByteArray> data(const QString &key) const;
    void setData(const QString &key, const QByteArray &bytes);

    /// Tells when saving begins to fail and when it works again. One observer, as long as this lives.
    void observeSaving(std::function<void(bool isFailing)> observer);
    /// Tries again what could not be written.
    void retry();
    /// Answers when everything so far is on the disk, or could not be written: false then. Not when `context` is gone.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);
    /// Waits until everything is on the disk, trying once more what failed; false when that fails too.
    bool flush();

private:
    void save();

    SnapshotFile m_file;
    QJsonObject m_values;
};

} // namespace ostrelle
