#include "files/RecentListModel.h"

#include "files/AudioPreview.h"
#include "files/FilePresence.h"
#include "files/PathToolTip.h"
#include "files/PlayedPart.h"
#include "files/RecentFiles.h"
#include "files/RecentThumbnails.h"
#include "records/PathText.h"

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

QList<RecentRecord> recordsOf(const QList<RecentFile> &files)
{
    QList<RecentRecord> records;
    for (const RecentFile &file : files)
        records.append({QUuid::createUuidV5(QUuid(), file.path), file});
    return records;
}

} // namespace

RecentListModel::RecentListModel(const Surroundings &surroundings, QObject *parent)
    : RecordListModel(recordsOf(surroundings.recents.items()), parent)
    , m_around(surroundings)
    , m_itemsWatch(surroundings.recents.bindableItems().addNotifier([this] { follow(); }))
{
    connect(&m_around.presence, &FilePresence::changed, this, &RecentListModel::tellPaths);
    if (m_around.thumbnails != nullptr) {
        connect(m_around.thumbnails, &RecentThumbnails::arrived, this,
                [this](const QString &path) { tellPaths({standardizedPath(path)}); });
    }
    if (m_around.preview != nullptr) {
        m_playingPath = m_around.preview->playingPath();
        m_playingWatch = m_around.preview->bindablePlayingPath().addNotifier([this] { followPlaying(); });
        m_positionWatch = m_around.preview->bindablePosition().addNotifier([this] { followPlaying(); });
    }
}

QVariant RecentListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return file(index.row()).name;
    case Qt::ToolTipRole:
        return pathToolTip(file(index.row()).path);
    case Qt::AccessibleDescriptionRole:
        return file(index.row()).path;
    case Qt::AccessibleTextRole:
        return entry(index.row()).description();
    case kEntryRole:
        return QVariant::fromValue(entry(index.row()));
    default:
        return {};
    }
}

RecentEntry RecentListModel::entry(int row) const
{
    const RecentFile &shown = file(row);
    RecentEntry entry{.id = idAt(row), .path = shown.path, .name = shown.name, .summary = shown.summary};
    entry.isMissing = !m_around.presence.facts(standardizedPath(shown.path)).isPresent();
    if (m_around.thumbnails != nullptr)
        entry.thumbnail = m_around.thumbnails->cached(shown.path);
    if (m_around.preview != nullptr && m_around.preview->isAvailable()) {
        entry.isPlayable = !entry.isMissing;
        entry.isPlaying = !m_playingPath.isEmpty() && m_playingPath == shown.path;
        if (entry.isPlaying)
            entry.progress = playedPart(*m_around.preview);
    }
    return entry;
}

int RecentListModel::rowOf(const QUuid &id) const
{
    const auto found =
        std::find_if(records().cbegin(), records().cend(), [&](const RecentRecord &record) { return record.id == id; });
    return found == records().cend() ? -1 : static_cast<int>(found - records().cbegin());
}

void RecentListModel::setVisibleRows(int first, int last)
{
    if (m_around.thumbnails == nullptr)
        return;
    QSet<QString> visible;
    for (int row = first; row <= last; ++row) {
        const QString path = file(row).path;
        if (!m_around.presence.facts(standardizedPath(path)).isPresent())
            continue;
        visible.insert(path);
        if (!m_visible.contains(path))
            m_around.thumbnails->load(path);
    }
    m_visible = visible;
}

void RecentListModel::follow()
{
    Q_EMIT aboutToFollow();
    const QList<RecentRecord> after = recordsOf(m_around.recents.items());
    renewThumbnails(after);
    for (const ListStep &step : listSteps(records(), after))
        apply(step, after);
    Q_EMIT followed();
}

/// Of what was looked at again, since it may have changed.
void RecentListModel::renewThumbnails(const QList<RecentRecord> &after)
{
    if (m_around.thumbnails == nullptr)
        return;
    for (const RecentRecord &record : after) {
        const int before = rowOf(record.id);
        if (before >= 0 && file(before).date != record.file.date)
            m_around.thumbnails->renew(record.file.path);
    }
}

void RecentListModel::followPlaying()
{
    const QString before = std::exchange(m_playingPath, m_around.preview->playingPath());
    tellChanged([&](const RecentRecord &record) {
        return !record.file.path.isEmpty() && (record.file.path == before || record.file.path == m_playingPath);
    });
}

void RecentListModel::tellPaths(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    tellChanged([&](const RecentRecord &record) { return changed.contains(standardizedPath(record.file.path)); });
}

} // namespace ostrelle
