#pragma once

#include "records/JsonListFile.h"

#include <QJsonArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <utility>

namespace ostrelle {

/// A list of records in a file of its own in the data folder, which `Record` names as kFileName: one compact JSON
/// array, an object per record in list order, as its toJson() and fromJson() have it. One malformed element makes the
/// whole file undecodable: the list starts empty, the file stays untouched until the next save and is kept aside then.
/// Main thread; only load() and flush() wait for the disk.
template <typename Record>
class JsonListStore
{
public:
    explicit JsonListStore(const QString &folder)
        : m_file(folder + u'/' + Record::kFileName.toString(), Record::kListName.toString())
    {
    }

    QList<Record> load()
    {
        QList<Record> records;
        QSet<QUuid> ids{QUuid()};
        const bool isGood = m_file.load([&](const QJsonObject &object) {
            auto record = Record::fromJson(object);
            if (!record)
                return false;
            // Entries are told apart by ids, and the null one means none; a file put together by hand may have it, or
            // one twice.
            while (ids.contains(record->id))
                record->id = QUuid::createUuid();
            ids.insert(record->id);
            records.append(*record);
            return true;
        });
        return isGood ? records : QList<Record>();
    }

    /// Encodes and writes the snapshot in the background; the latest one wins.
    void save(const QList<Record> &records)
    {
        m_file.save([records] { return recordsToJson(records); });
    }

    /// Tells when saving begins to fail and when it works again. One observer.
    void observeSaving(std::function<void(bool isFailing)> observer) { m_file.observeSaving(std::move(observer)); }
    /// Tries again what could not be written.
    void retry() { m_file.retry(); }
    /// Answers when everything so far is on the disk, or could not be written: false then. Not when `context` is gone.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer)
    {
        m_file.whenSaved(context, std::move(answer));
    }
    /// Waits until everything is on the disk, trying once more what failed; false when that fails too.
    bool flush() { return m_file.flush(); }

    /// The records as they are stored.
    static QJsonArray recordsToJson(const QList<Record> &records)
    {
        QJsonArray array;
        for (const Record &record : records)
            array.append(toJson(record));
        return array;
    }

private:
    JsonListFile m_file;
};

} // namespace ostrelle
