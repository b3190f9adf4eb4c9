#include "files/AssetListModel.h"

#include "files/AssetShelfService.h"
#include "files/AudioPreview.h"
#include "files/FileKinds.h"
#include "files/FilePresence.h"
#include "files/PlayedPart.h"
#include "records/PathText.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace ostrelle {

AssetListModel::AssetListModel(AssetShelfService &shelf, FilePresence &presence, AudioPreview &preview, QObject *parent)
    : RecordListModel(shelf.items(), parent)
    , m_shelf(shelf)
    , m_presence(presence)
    , m_preview(preview)
    , m_playingPath(preview.playingPath())
    , m_playingWatch(preview.bindablePlayingPath().addNotifier([this] { followPlaying(); }))
    , m_positionWatch(preview.bindablePosition().addNotifier([this] { followPlaying(); }))
{
    connect(&shelf, &AssetShelfService::itemsChanged, this, [this](const QList<ListStep> &steps) {
        for (const ListStep &step : steps)
            apply(step, m_shelf.items());
        Q_EMIT stepped();
    });
    connect(&presence, &FilePresence::changed, this, &AssetListModel::followPresence);
    connect(&preview, &AudioPreview::failed, this, &AssetListModel::tellFailure);
}

QVariant AssetListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return name(row);
    case Qt::AccessibleTextRole:
        if (!facts(row).isPresent())
            return QString(name(row) + QStringLiteral(", missing"));
        if (isPlaying(row))
            return QString(name(row) + QStringLiteral(", playing"));
        return name(row);
    case Qt::AccessibleDescriptionRole:
        return item(row).path;
    default:
        return {};
    }
}

int AssetListModel::rowOf(const QUuid &id) const
{
    const auto found =
        std::find_if(records().cbegin(), records().cend(), [&](const ShelfItem &item) { return item.id == id; });
    return found == records().cend() ? -1 : static_cast<int>(found - records().cbegin());
}

QString AssetListModel::name(int row) const
{
    return lastPathComponent(item(row).path).toString();
}

FileFacts AssetListModel::facts(int row) const
{
    return m_presence.facts(item(row).path);
}

bool AssetListModel::isPlayable(int row) const
{
    return m_preview.isAvailable() && isAudio(item(row).path, facts(row));
}

bool AssetListModel::isPlaying(int row) const
{
    return !m_playingPath.isEmpty() && item(row).path == m_playingPath;
}

std::optional<double> AssetListModel::playedPart(int row) const
{
    return isPlaying(row) ? ostrelle::playedPart(m_preview) : std::nullopt;
}

void AssetListModel::tellFailure(const QString &path)
{
    const auto found =
        std::find_if(records().cbegin(), records().cend(), [&](const ShelfItem &item) { return item.path == path; });
    if (found != records().cend())
        Q_EMIT previewFailed(static_cast<int>(found - records().cbegin()));
}

void AssetListModel::followPresence(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    tellChanged([&](const ShelfItem &item) { return changed.contains(item.path); });
}

void AssetListModel::followPlaying()
{
    const QString before = std::exchange(m_playingPath, m_preview.playingPath());
    tellChanged([&](const ShelfItem &item) { return item.path == before || item.path == m_playingPath; });
}

} // namespace ostrelle
