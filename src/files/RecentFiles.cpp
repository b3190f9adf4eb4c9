#include "files/RecentFiles.h"

#include "foundation/DefaultsDatabase.h"
#include "records/PathText.h"
#include "records/RecordText.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

bool lists(const QList<RecentFile> &files, const QString &path)
{
    return std::any_of(files.begin(), files.end(), [&](const RecentFile &file) { return file.path == path; });
}

QList<RecentFile> loaded(const DefaultsDatabase &defaults, const QString &key)
{
    const std::optional<QByteArray> data = defaults.data(key);
    const auto stored = data ? decodedRecentFiles(*data) : std::nullopt;
    QList<RecentFile> files;
    // A list put together by hand may repeat a path.
    for (const RecentFile &file : stored.value_or(QList<RecentFile>())) {
        if (!lists(files, file.path))
            files.append(file);
    }
    return files;
}

} // namespace

RecentFiles::RecentFiles(DefaultsDatabase &defaults, QString key, int limit)
    : m_defaults(defaults)
    , m_key(std::move(key))
    , m_limit(limit)
    , m_items(loaded(defaults, m_key))
{
}

QList<RecentFile> RecentFiles::without(const QString &path) const
{
    QList<RecentFile> left = items();
    left.removeIf([&](const RecentFile &file) { return file.path == path; });
    return left;
}

void RecentFiles::record(const QString &path, const QString &summary)
{
    QList<RecentFile> recorded = without(path);
    recorded.prepend(
        {path, lastPathComponent(path).toString(), summary, referenceDate(QDateTime::currentMSecsSinceEpoch())});
    put(recorded.first(std::min<qsizetype>(m_limit, recorded.size())));
}

void RecentFiles::remove(const QString &path)
{
    removeUndoably(without(path));
}

void RecentFiles::removeMissing(const QString &path)
{
    put(without(path));
}

void RecentFiles::clear()
{
    removeUndoably({});
}

void RecentFiles::removeUndoably(const QList<RecentFile> &left)
{
    if (left.size() == items().size())
        return;
    m_removal = {items(), left};
    put(left);
}

/// What was recorded since stands on top and stays there; below, everything stands where it stood.
QList<RecentFile> RecentFiles::undone(const Removal &removal) const
{
    QList<RecentFile> result;
    for (const RecentFile &file : items()) {
        if (!removal.before.contains(file))
            result.append(file);
    }
    for (const RecentFile &file : removal.before) {
        const bool isBroughtBack = !removal.after.contains(file) && !lists(items(), file.path);
        if (isBroughtBack || items().contains(file))
            result.append(file);
    }
    const qsizetype most = std::max<qsizetype>(m_limit, removal.before.size());
    return result.first(std::min(most, result.size()));
}

bool RecentFiles::canUndo() const
{
    return m_removal && undone(*m_removal) != items();
}

void RecentFiles::undo()
{
    if (const auto removal = std::exchange(m_removal, std::nullopt))
        put(undone(*removal));
}

void RecentFiles::lapse()
{
    m_removal.reset();
}

void RecentFiles::put(const QList<RecentFile> &items)
{
    m_items = items;
    m_defaults.setData(m_key, encodedRecentFiles(items));
}

} // namespace ostrelle
