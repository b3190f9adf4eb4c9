#include "files/AssetListModel.h"

#include "files/AssetShelfService.h"
#include "files/AudioPreview.h"
#include "files/FileKinds.h"
#include "files/FilePresence.h"
#include "records/PathText.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace ostrelle {

AssetListModel::AssetListModel(AssetShelfService &shelf, FilePresence &presence, AudioPreview &preview, QObject *parent)
    : QAbstractListModel(parent)
    , m_shelf(shelf)
    , m_presence(presence)
    , m_preview(preview)
    , m_items(shelf.items())
    , m_playingPath(preview.playingPath())
    , m_playingWatch(preview.bindablePlayingPath().addNotifier([this] { followPlaying(); }))
{
    connect(&shelf, &AssetShelfService::itemsChanged, this, [this](const QList<ListStep> &steps) {
        for (const ListStep &step : steps)
            apply(step);
        Q_EMIT stepped();
    });
    connect(&presence, &FilePresence::changed, this, &AssetListModel::followPresence);
}

int AssetListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
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
        std::find_if(m_items.cbegin(), m_items.cend(), [&](const ShelfItem &item) { return item.id == id; });
    return found == m_items.cend() ? -1 : static_cast<int>(found - m_items.cbegin());
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

void AssetListModel::apply(const ListStep &step)
{
    const int last = step.at + step.count - 1;
    switch (step.kind) {
    case ListStep::Kind::Insert:
        beginInsertRows({}, step.at, last);
        m_items.insert(step.at, step.count, ShelfItem());
        for (int row = step.at; row <= last; ++row)
            m_items[row] = m_shelf.items().at(row);
        endInsertRows();
        break;
    case ListStep::Kind::Remove:
        beginRemoveRows({}, step.at, last);
        m_items.remove(step.at, step.count);
        endRemoveRows();
        break;
    case ListStep::Kind::Move:
        beginMoveRows({}, step.from, step.from, {}, step.at > step.from ? step.at + 1 : step.at);
        m_items.move(step.from, step.at);
        endMoveRows();
        break;
    case ListStep::Kind::Change:
        m_items[step.at] = m_shelf.items().at(step.at);
        Q_EMIT dataChanged(index(step.at), index(step.at));
        break;
    }
}

void AssetListModel::followPresence(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    int first = -1;
    for (int row = 0; row <= m_items.size(); ++row) {
        const bool isChanged = row < m_items.size() && changed.contains(item(row).path);
        if (isChanged && first < 0)
            first = row;
        else if (!isChanged && first >= 0)
            Q_EMIT dataChanged(index(std::exchange(first, -1)), index(row - 1));
    }
}

void AssetListModel::followPlaying()
{
    const QString before = std::exchange(m_playingPath, m_preview.playingPath());
    for (int row = 0; row < m_items.size(); ++row) {
        if (item(row).path == before || item(row).path == m_playingPath)
            Q_EMIT dataChanged(index(row), index(row));
    }
}

} // namespace ostrelle
