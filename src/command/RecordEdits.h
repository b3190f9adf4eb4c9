#pragma once

#include "command/FilePaths.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "records/JsonListStore.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>

namespace ostrelle {

/// Waits until the list is on the disk; Failed, and told, when it cannot be written.
template <typename Record>
ExitStatus written(JsonListStore<Record> &store)
{
    return store.flush() ? ExitStatus::Done
                         : fail(ExitStatus::Failed,
                                QStringLiteral("cannot write %1/%2").arg(AppPaths::support(), Record::kFileName));
}

/// Changes the stored list of records on the disk; the caller holds the lock. Failed when it cannot be written.
template <typename Record>
ExitStatus editRecords(const std::function<QList<Record>(const QList<Record> &)> &edit)
{
    JsonListStore<Record> store(AppPaths::support());
    const QList<Record> records = store.load();
    muteStoreWarnings();
    store.save(edit(records));
    return written(store);
}

/// The same for entry `number` of `tool`.
template <typename Record>
ExitStatus editRecord(const QString &tool, int number,
                      const std::function<QList<Record>(const QList<Record> &, int index)> &edit)
{
    JsonListStore<Record> store(AppPaths::support());
    const QList<Record> records = store.load();
    if (number > records.size())
        return noEntry(tool, number);
    muteStoreWarnings();
    store.save(edit(records, number - 1));
    return written(store);
}

/// Lists the records, from the running program or the disk, a line of `line(record)` each.
template <typename Record>
ExitStatus listStoredRecords(const Invocation &invocation, const QString &verb,
                             const std::function<QString(const Record &)> &line)
{
    return listRecords(
        invocation, verb,
        [] { return JsonListStore<Record>::recordsToJson(JsonListStore<Record>(AppPaths::support()).load()); },
        [&](const QJsonArray &records) {
            QString text;
            int number = 0;
            for (const QJsonValue &value : records) {
                if (const auto record = Record::fromJson(value.toObject()))
                    text += QStringLiteral("%1  %2\n").arg(++number, 4).arg(line(*record));
            }
            return text;
        });
}

/// Adds the paths that a command was given to the list of `verb`; Failed when some were `refused`, the others added.
template <typename Record>
ExitStatus addPaths(const QStringList &words, PathKind kind, const QString &verb, const QString &refused,
                    const std::function<QList<Record>(const QList<Record> &, const QStringList &)> &edit)
{
    ExitStatus status = ExitStatus::Done;
    const QStringList paths = existingPaths(
        words, kind, [&](const QString &word) { status = fail(ExitStatus::Failed, refused.arg(printable(word))); });
    for (const QStringList &portion : requestPortions(paths)) {
        const ExitStatus added =
            editStores(verb, {{QStringLiteral("paths"), QJsonArray::fromStringList(portion)}}, [&] {
                return editRecords<Record>([&](const QList<Record> &records) { return edit(records, portion); });
            });
        if (added != ExitStatus::Done)
            return added;
    }
    return status;
}

} // namespace ostrelle
