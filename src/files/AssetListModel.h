#pragma once

#include "files/FileFacts.h"
#include "files/RecordListModel.h"
#include "records/ListStep.h"
#include "records/ShelfItem.h"

#include <QPropertyNotifier>

#include <optional>

namespace ostrelle {

class AssetShelfService;
class AudioPreview;
class FilePresence;

/// The shelf as a list, newest first.
class AssetListModel : public RecordListModel<ShelfItem>
{
    Q_OBJECT
public:
    AssetListModel(AssetShelfService &shelf, FilePresence &presence, AudioPreview &preview, QObject *parent = nullptr);

    /// The name as DisplayRole, name and state as AccessibleTextRole, the path as AccessibleDescriptionRole.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const ShelfItem &item(int row) const { return records().at(row); }
    /// -1 when it is not listed.
    int rowOf(const QUuid &id) const;
    QString name(int row) const;
    FileFacts facts(int row) const;
    /// Whether it is a sound that can be played here.
    bool isPlayable(int row) const;
    bool isPlaying(int row) const;
    /// How much of it was heard, 0 to 1; nothing when it is not being played or its length is unknown.
    std::optional<double> playedPart(int row) const;

Q_SIGNALS:
    /// Everything of one change of the shelf is done.
    void stepped();
    /// It could not be played.
    void previewFailed(int row);

private:
    void followPresence(const QStringList &paths);
    void followPlaying();
    void tellFailure(const QString &path);

    AssetShelfService &m_shelf;
    FilePresence &m_presence;
    AudioPreview &m_preview;
    QString m_playingPath;
    QPropertyNotifier m_playingWatch;
    QPropertyNotifier m_positionWatch;
};

} // namespace ostrelle
