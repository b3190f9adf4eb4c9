#include "records/RecordLists.h"

#include "records/PathText.h"

#include <QSet>

namespace ostrelle {
namespace {

/// Those of `paths` that are not among the records', standardised, each once, in order.
template <typename Record>
QStringList newPaths(const QList<Record> &records, const QStringList &paths)
{
    QSet<QString> known;
    known.reserve(records.size() + paths.size());
    for (const Record &record : records)
        known.insert(record.path);
    QStringList result;
    for (const QString &path : paths) {
        const QString standardized = standardizedPath(path);
        const qsizetype before = known.size();
        known.insert(standardized);
        if (known.size() > before)
            result.append(standardized);
    }
    return result;
}

QString folderName(const QString &path)
{
    return lastPathComponent(path).toString();
}

} // namespace

QList<ShelfItem> withPaths(const QList<ShelfItem> &items, const QStringList &paths, double addedAt)
{
    const QStringList added = newPaths(items, paths);
    if (added.isEmpty())
        return items;
    QList<ShelfItem> result;
    result.reserve(items.size() + added.size());
    for (auto path = added.crbegin(); path != added.crend(); ++path)
        result.append({QUuid::createUuid(), *path, addedAt});
    return result + items;
}

QList<Project> withFolders(const QList<Project> &projects, const QStringList &folders)
{
    QList<Project> result = projects;
    const QStringList added = newPaths(projects, folders);
    for (const QString &path : added)
        result.append({QUuid::createUuid(), path, folderName(path)});
    return result;
}

QString projectName(const Project &project, const QString &name)
{
    const QString trimmed = name.trimmed();
    return trimmed.isEmpty() ? folderName(project.path) : trimmed;
}

} // namespace ostrelle
