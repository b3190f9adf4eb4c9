#include "records/ClipboardStore.h"

#include "foundation/SerialQueue.h"
#include "records/ClipWriter.h"

#include <QObject>
#include <QPointer>

#include <atomic>
#include <utility>

namespace ostrelle {
namespace {

// A burst of changes is written at its end, but not at the price of holding it all in memory.
constexpr qint64 kGatheredBytes = 4 * 1024 * 1024;
// How often a reader begins anew when the array was replaced under it.
constexpr int kReadAttempts = 5;

} // namespace

/// `disk` belongs to the queue's thread, but for the moments after drain() and before the next post(). Answers travel
/// as events to `answers`, so that none is called after the store is gone.
struct ClipboardStore::Writer
{
    explicit Writer(const QString &folder)
        : disk(folder)
    {
    }

    void load();
    void change(std::function<void(ClipWriter &)> apply);
    void save();
    void answer(const QObject *context, std::function<void()> call);
    void report();

    ClipWriter disk;
    std::atomic<int> waitingChanges = 0;
    bool isLoaded = false;  ///< the queue's thread
    bool isFailing = false; ///< as reported; the queue's thread
    QObject answers;
    QPointer<const QObject> observerContext;
    std::function<void(bool)> observer;
    SerialQueue queue;
};

void ClipboardStore::Writer::load()
{
    if (!std::exchange(isLoaded, true))
        disk.load();
}

void ClipboardStore::Writer::change(std::function<void(ClipWriter &)> apply)
{
    ++waitingChanges;
    queue.post([this, apply = std::move(apply)] {
        apply(disk);
        if (--waitingChanges == 0 || disk.waitingBytes() > kGatheredBytes)
            save();
    });
}

void ClipboardStore::Writer::save()
{
    disk.save();
    report();
}

void ClipboardStore::Writer::report()
{
    const bool fails = !disk.isSaved();
    if (std::exchange(isFailing, fails) == fails)
        return;
    QMetaObject::invokeMethod(
        &answers,
        [this, fails] {
            if (observerContext && observer)
                observer(fails);
        },
        Qt::QueuedConnection);
}

QList<ClipItem> ClipboardStore::read(const QString &folder)
{
    QList<ClipItem> items;
    for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
        ClipWriter files(folder);
        items = files.read();
        // Between array and journal: the journal that was read, or missed, may belong to the next array.
        if (files.isUpToDate())
            break;
    }
    return items;
}

ClipboardStore::ClipboardStore(const QString &folder)
    : m_writer(std::make_unique<Writer>(folder))
{
}

ClipboardStore::~ClipboardStore()
{
    close();
}

QList<ClipItem> ClipboardStore::load()
{
    m_writer->queue.post([writer = m_writer.get()] { writer->load(); });
    m_writer->queue.drain();
    QList<ClipItem> items = m_writer->disk.items();
    retry(); // what a crash left undone
    return items;
}

void ClipboardStore::loadLater(const QObject *context, std::function<void(QList<ClipItem>)> answer)
{
    m_writer->queue.post(
        [writer = m_writer.get(), guard = QPointer<const QObject>(context), answer = std::move(answer)] {
            writer->load();
            QMetaObject::invokeMethod(
                &writer->answers,
                [items = writer->disk.items(), guard, answer] {
                    if (guard)
                        answer(items);
                },
                Qt::QueuedConnection);
            writer->save();
        });
}

void ClipboardStore::insertAtTop(const ClipItem &item, const QByteArray &image)
{
    m_writer->change([item, image](ClipWriter &disk) { disk.insertAtTop(item, image); });
}

void ClipboardStore::moveToTop(const QUuid &id, double date)
{
    m_writer->change([id, date](ClipWriter &disk) { disk.moveToTop({id, date}); });
}

void ClipboardStore::setPinned(const QUuid &id, bool pinned)
{
    m_writer->change([id, pinned](ClipWriter &disk) { disk.setPinned({id, pinned}); });
}

void ClipboardStore::trim(const QList<QUuid> &ids)
{
    m_writer->change([ids](ClipWriter &disk) { disk.trim({ids}); });
}

void ClipboardStore::remove(const QList<QUuid> &ids, Erasure erasure)
{
    m_writer->change([ids, erasure](ClipWriter &disk) { disk.remove({ids}, erasure); });
}

void ClipboardStore::restore(const QList<ClipItem> &items, const QList<QUuid> &order)
{
    m_writer->change([items, order](ClipWriter &disk) { disk.restore(items, order); });
}

void ClipboardStore::settle()
{
    m_writer->change([](ClipWriter &disk) { disk.settle(); });
}

void ClipboardStore::settleAndRemove(const QList<QUuid> &ids)
{
    m_writer->change([ids](ClipWriter &disk) {
        disk.settle();
        disk.remove({ids}, Erasure::Final);
    });
}

void ClipboardStore::removeAll()
{
    m_writer->change([](ClipWriter &disk) { disk.removeAll(); });
}

void ClipboardStore::retry()
{
    m_writer->queue.post([writer = m_writer.get()] { writer->save(); });
}

void ClipboardStore::observeSaving(const QObject *context, std::function<void(bool)> observer)
{
    m_writer->observerContext = context;
    m_writer->observer = std::move(observer);
}

void ClipboardStore::readImage(const QUuid &id, const QObject *context,
                               std::function<void(std::optional<QByteArray>)> answer)
{
    m_writer->queue.post(
        [writer = m_writer.get(), id, guard = QPointer<const QObject>(context), answer = std::move(answer)] {
            QMetaObject::invokeMethod(
                &writer->answers,
                [image = writer->disk.image(id), guard, answer] {
                    if (guard)
                        answer(image);
                },
                Qt::QueuedConnection);
        });
}

void ClipboardStore::findImage(const QByteArray &image, const QList<QUuid> &candidates, const QObject *context,
                               std::function<void(std::optional<QUuid>)> answer)
{
    m_writer->queue.post([writer = m_writer.get(), image, candidates, guard = QPointer<const QObject>(context),
                          answer = std::move(answer)] {
        QMetaObject::invokeMethod(
            &writer->answers,
            [found = writer->disk.find(image, candidates), guard, answer] {
                if (guard)
                    answer(found);
            },
            Qt::QueuedConnection);
    });
}

void ClipboardStore::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    m_writer->queue.post(
        [writer = m_writer.get(), guard = QPointer<const QObject>(context), answer = std::move(answer)] {
            writer->save();
            QMetaObject::invokeMethod(
                &writer->answers,
                [isSaved = writer->disk.isSaved(), guard, answer] {
                    if (guard)
                        answer(isSaved);
                },
                Qt::QueuedConnection);
        });
}

bool ClipboardStore::flush()
{
    retry();
    m_writer->queue.drain();
    return m_writer->disk.isSaved();
}

bool ClipboardStore::close()
{
    m_writer->queue.post([writer = m_writer.get()] {
        writer->disk.close();
        writer->report();
    });
    m_writer->queue.drain();
    return m_writer->disk.isSaved();
}

} // namespace ostrelle
