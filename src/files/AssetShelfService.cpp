#include "files/AssetShelfService.h"

#include "files/AudioPreview.h"
#include "platform/Haptics.h"
#include "records/PathText.h"
#include "records/RecordLists.h"
#include "records/RecordText.h"

#include <QDateTime>
#include <QSet>

#include <utility>

namespace ostrelle {
namespace {

QStringList standardized(const QStringList &paths)
{
    QStringList result;
    result.reserve(paths.size());
    for (const QString &path : paths)
        result.append(standardizedPath(path));
    return result;
}

QStringList presentPaths(const QStringList &paths, const QList<FileFacts> &facts)
{
    QStringList present;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (facts[i].isPresent())
            present.append(paths[i]);
    }
    return present;
}

} // namespace

AssetShelfService::AssetShelfService(JsonListStore<ShelfItem> &store, FilePresence &presence, AudioPreview &preview,
                                     Haptics &haptics, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_presence(presence)
    , m_preview(preview)
    , m_haptics(haptics)
    , m_additions(presence)
    , m_items(store.load())
{
    pruneMissing();
}

const QList<ShelfItem> &AssetShelfService::items() const
{
    return m_items.value();
}

QBindable<QList<ShelfItem>> AssetShelfService::bindableItems()
{
    return &m_items;
}

void AssetShelfService::pruneMissing()
{
    QStringList paths;
    for (const ShelfItem &item : items())
        paths.append(item.path);
    if (paths.isEmpty())
        return;
    m_presence.ask(paths, this, [this, loaded = items()](const QList<FileFacts> &facts) {
        QSet<QUuid> gone;
        for (qsizetype i = 0; i < loaded.size(); ++i) {
            if (!facts[i].isPresent())
                gone.insert(loaded[i].id);
        }
        QList<ShelfItem> left = items();
        if (left.removeIf([&](const ShelfItem &item) { return gone.contains(item.id); }) > 0)
            put(left);
    });
}

void AssetShelfService::add(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    const QStringList candidates = standardized(paths);
    m_additions.ask(candidates, [this, candidates](const QList<FileFacts> &facts) {
        addExisting(presentPaths(candidates, facts));
    });
}

void AssetShelfService::addExisting(const QStringList &paths)
{
    const QList<ShelfItem> added = withPaths(items(), paths, referenceDate(QDateTime::currentMSecsSinceEpoch()));
    if (added.size() == items().size())
        return;
    m_haptics.tick();
    put(added);
}

void AssetShelfService::remove(const QList<QUuid> &ids)
{
    const QSet<QUuid> removed(ids.begin(), ids.end());
    QList<ShelfItem> left;
    for (const ShelfItem &item : items()) {
        if (removed.contains(item.id))
            m_preview.stop(item.path);
        else
            left.append(item);
    }
    removeUndoably(left);
}

void AssetShelfService::clear()
{
    m_preview.stop();
    removeUndoably({});
}

void AssetShelfService::eraseAll()
{
    m_additions.forget();
    m_preview.stop();
    lapse();
    put({});
}

void AssetShelfService::removeUndoably(const QList<ShelfItem> &left)
{
    if (left.size() < items().size())
        m_undo.emplace(items(), left);
    put(left);
}

void AssetShelfService::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    m_store.whenSaved(context, std::move(answer));
}

bool AssetShelfService::canUndo() const
{
    return m_undo && m_undo->undone(items()) != items();
}

void AssetShelfService::undo()
{
    if (const auto undo = std::exchange(m_undo, std::nullopt))
        put(undo->undone(items()));
}

void AssetShelfService::lapse()
{
    m_undo.reset();
}

void AssetShelfService::put(const QList<ShelfItem> &items)
{
    const QList<ListStep> steps = listSteps(this->items(), items);
    m_items = items;
    m_store.save(items);
    if (!steps.isEmpty())
        Q_EMIT itemsChanged(steps);
}

} // namespace ostrelle
