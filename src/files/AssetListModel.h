#pragma once

#include "files/FileFacts.h"
#include "records/ListStep.h"
#include "records/ShelfItem.h"

#include <QAbstractListModel>
#include <QList>
#include <QPropertyNotifier>

namespace ostrelle {

class AssetShelfService;
class AudioPreview;
class FilePresence;

/// The shelf as a list, newest first.
class AssetListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    AssetListModel(AssetShelfService &shelf, FilePresence &presence, AudioPreview &preview, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    /// The name as DisplayRole, name and state as AccessibleTextRole, the path as AccessibleDescriptionRole.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const ShelfItem &item(int row) const { return m_items.at(row); }
    /// -1 when it is not listed.
    int rowOf(const QUuid &id) const;
    QString name(int row) const;
    FileFacts facts(int row) const;
    /// Whether it is a sound that can be played here.
    bool isPlayable(int row) const;
    bool isPlaying(int row) const;

Q_SIGNALS:
    /// Everything of one change of the shelf is done.
    void stepped();

private:
    void apply(const ListStep &step);
    void followPresence(const QStringList &paths);
    void followPlaying();

    AssetShelfService &m_shelf;
    FilePresence &m_presence;
    AudioPreview &m_preview;
    /// A list of its own, because views may ask while the shelf is already ahead by several steps.
    QList<ShelfItem> m_items;
    QString m_playingPath;
    QPropertyNotifier m_playingWatch;
};

} // namespace ostrelle
