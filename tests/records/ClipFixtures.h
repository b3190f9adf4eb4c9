#pragma once

#include "records/ClipItem.h"
#include "records/ClipboardStore.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

namespace ostrelle {

ClipItem textClip(const QString &text, double date = 1);
ClipItem imageClip(const QByteArray &image, double date = 1);
/// Bytes that do not compress and are the same for the same seed.
QByteArray noise(qsizetype size, quint32 seed);

/// The list that a store should hold: the same calls, done in memory.
class ExpectedHistory
{
public:
    explicit ExpectedHistory(ClipboardStore &store)
        : m_store(&store)
    {
    }

    void follow(ClipboardStore &store) { m_store = &store; }
    const QList<ClipItem> &items() const { return m_items; }
    const QByteArray &image(const QUuid &id) const { return *m_images.constFind(id); }

    void insert(const ClipItem &item, const QByteArray &image = {});
    void moveToTop(int index, double date);
    void togglePin(int index);
    void trim(int index);
    void remove(int index, ClipboardStore::Erasure erasure);
    /// Brings back the last one removed, where it was.
    void restore();

private:
    QList<QUuid> takeId(int index);

    ClipboardStore *m_store;
    QList<ClipItem> m_items;
    QHash<QUuid, QByteArray> m_images;
    int m_removedIndex = 0;
    ClipItem m_removed;
};

/// Calls that answer later, awaited.
std::optional<QByteArray> readImage(ClipboardStore &store, const QUuid &id);
std::optional<QUuid> findImage(ClipboardStore &store, const QByteArray &image, const QList<QUuid> &candidates);

/// Everything a store gives back: its items, each with its image where it has one.
void compareWithStore(ClipboardStore &store, const QList<ClipItem> &loaded, const ExpectedHistory &expected);

QByteArray fileContent(const QString &path);
void writeFile(const QString &path, const QByteArray &content);
/// True when any file of the folder contains these bytes.
bool folderContains(const QString &folder, const QByteArray &needle);

} // namespace ostrelle
