#include "clipboard/ClipboardService.h"

#include "clipboard/EqualClips.h"
#include "core/SettingsStore.h"
#include "records/ClipboardStore.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds kPollInterval = 500ms;
constexpr std::chrono::nanoseconds kUndoLife = 30s;

std::optional<ClipboardFormat> formatOfImage(const ClipItem &item)
{
    const QString type = item.image ? item.image->type : QString();
    if (type == QLatin1StringView("public.png"))
        return ClipboardFormat::Png;
    if (type == QLatin1StringView("public.tiff"))
        return ClipboardFormat::Tiff;
    return std::nullopt;
}

} // namespace

ClipboardService::ClipboardService(SettingsStore &settings, ClipboardPort &port, ClipboardStore &store,
                                   TaskScheduler &scheduler, ClipImages &images, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_port(port)
    , m_store(store)
    , m_scheduler(scheduler)
    , m_images(images)
    , m_lastChangeCount(port.changeCount())
    , m_retry(scheduler, [&store] { store.retry(); })
    , m_enabledNotifier(settings.bindableClipboardEnabled().addNotifier([this] { followEnabled(); }))
{
    store.loadLater(this, [this](const QList<ClipItem> &stored) { adopt(stored); });
    connect(&port, &ClipboardPort::changed, this, &ClipboardService::schedulePoll);
    store.observeSaving(this, [this](bool isFailing) { m_retry.follow(isFailing); });
}

ClipboardService::~ClipboardService() = default;

const QList<ClipItem> &ClipboardService::items() const
{
    return m_items;
}

void ClipboardService::whenLoaded(const QObject *context, std::function<void()> call)
{
    if (m_isLoaded)
        call();
    else
        m_awaitingLoad.push_back([guard = QPointer(context), call = std::move(call)] {
            if (guard)
                call();
        });
}

void ClipboardService::finishLoading()
{
    if (!m_isLoaded)
        adopt(m_store.load());
}

void ClipboardService::adopt(const QList<ClipItem> &stored)
{
    if (std::exchange(m_isLoaded, true))
        return;
    m_items = stored;
    Q_EMIT itemsReset();
    for (const auto &call : std::exchange(m_awaitingLoad, {}))
        call();
    recordFinished();
}

void ClipboardService::followEnabled()
{
    if (m_settings.clipboardEnabled())
        start();
    else
        stop();
}

void ClipboardService::start()
{
    if (m_started)
        return;
    m_lastChangeCount = m_port.changeCount();
    m_started = m_scheduler.now();
}

void ClipboardService::stop()
{
    m_started.reset();
    passOverUnderway();
}

void ClipboardService::schedulePoll()
{
    if (!m_started || m_poll.isPending())
        return;
    const std::chrono::nanoseconds sinceTick = (m_scheduler.now() - *m_started) % kPollInterval;
    m_poll = m_scheduler.after(kPollInterval - sinceTick, this, [this] { poll(); });
}

void ClipboardService::poll()
{
    const qint64 count = m_port.changeCount();
    if (count == std::exchange(m_lastChangeCount, count) || !m_settings.clipboardEnabled())
        return;
    m_captures.push_back(
        std::make_unique<ClipboardCapture>(m_port, m_settings, m_images, count, [this] { recordFinished(); }));
    m_captures.back()->start();
}

void ClipboardService::recordFinished()
{
    while (m_isLoaded && !m_isComparing && !m_captures.empty() && m_captures.front()->isFinished()) {
        std::optional<CapturedClip> clip = m_captures.front()->takeResult();
        m_captures.pop_front();
        if (clip)
            record(std::move(*clip));
    }
    // What replaced the content while it was being read may have been announced before the last poll.
    if (m_port.changeCount() != m_lastChangeCount)
        schedulePoll();
}

void ClipboardService::record(CapturedClip clip)
{
    if (clip.item.kind == ClipItem::Kind::Image) {
        recordImage(std::move(clip));
        return;
    }
    if (m_undo) {
        const Items removed = m_undo->removed();
        for (const ClipItem &item : removed) {
            if (hasEqualContent(item, clip.item))
                m_undo->forget(item.id);
        }
    }
    const auto equal = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const ClipItem &item) { return hasEqualContent(item, clip.item); });
    if (equal != m_items.end())
        moveToTop(static_cast<int>(equal - m_items.begin()), clip.item.date);
    else
        insert(clip);
}

void ClipboardService::recordImage(CapturedClip clip)
{
    QList<QUuid> candidates;
    appendCandidates(candidates, m_items, *clip.item.image);
    if (m_undo)
        appendCandidates(candidates, m_undo->removed(), *clip.item.image);
    if (candidates.isEmpty()) {
        insert(clip);
        return;
    }
    m_isComparing = true;
    const QByteArray image = clip.image;
    const auto take = [this, clip = std::move(clip), number = m_passedOver](const std::optional<QUuid> &equal) {
        m_isComparing = false;
        const bool isWanted = m_started && number == m_passedOver;
        const int index = equal ? indexOf(*equal) : -1;
        if (isWanted && index >= 0) {
            moveToTop(index, clip.item.date);
        } else if (isWanted) {
            if (m_undo && equal)
                m_undo->forget(*equal);
            insert(clip);
        }
        recordFinished();
    };
    m_store.findImage(image, candidates, this, take);
}

void ClipboardService::insert(const CapturedClip &clip)
{
    m_items.prepend(clip.item);
    m_store.insertAtTop(clip.item, clip.image);
    Q_EMIT itemInserted(0);
    trim();
}

void ClipboardService::moveToTop(int index, double date)
{
    m_items.move(index, 0);
    m_items.first().date = date;
    m_store.moveToTop(m_items.first().id, date);
    if (index != 0)
        Q_EMIT itemMoved(index, 0);
    Q_EMIT itemChanged(0);
    trim();
}

void ClipboardService::trim()
{
    int unpinned = 0;
    const int limit = m_settings.clipboardLimit();
    const QList<QUuid> dropped = takeFromList([&](const ClipItem &item) { return !item.pinned && ++unpinned > limit; });
    if (!dropped.isEmpty())
        m_store.trim(dropped);
}

/// Asks for each item once, from the top, and tells of removals from the bottom, where the indices stay true.
QList<QUuid> ClipboardService::takeFromList(const std::function<bool(const ClipItem &)> &isTaken)
{
    QList<QUuid> ids;
    QList<int> indices;
    for (int i = 0; i < m_items.size(); ++i) {
        if (isTaken(m_items[i])) {
            ids.append(m_items[i].id);
            indices.prepend(i);
        }
    }
    if (indices.size() > 1 && indices.size() == m_items.size()) {
        m_items.clear();
        Q_EMIT itemsReset();
        return ids;
    }
    for (const int index : indices) {
        m_items.removeAt(index);
        Q_EMIT itemRemoved(index);
    }
    return ids;
}

void ClipboardService::copy(const QUuid &id, const Copied &copied)
{
    const auto tell = [copied](CopyOutcome outcome) {
        if (copied)
            copied(outcome);
    };
    const int index = indexOf(id);
    if (index < 0) {
        tell(CopyOutcome::Unreadable);
        return;
    }
    const ClipItem &item = m_items[index];
    const int number = ++m_writeNumber;
    switch (item.kind) {
    case ClipItem::Kind::Text:
    case ClipItem::Kind::Link:
        write(item.text.value_or(QString()));
        tell(CopyOutcome::Done);
        return;
    case ClipItem::Kind::Files:
        write(ClipboardFiles{item.paths.value_or(QStringList())});
        tell(CopyOutcome::Done);
        return;
    case ClipItem::Kind::Image:
        m_store.readImage(id, this,
                          [this, number, count = m_port.changeCount(), format = formatOfImage(item),
                           tell](const std::optional<QByteArray> &bytes) {
                              // Whatever was copied meanwhile is newer than this choice.
                              if (number != m_writeNumber || count != m_port.changeCount()) {
                                  tell(CopyOutcome::Overtaken);
                              } else if (bytes && format) {
                                  write(ClipboardImage{*bytes, *format});
                                  tell(CopyOutcome::Done);
                              } else {
                                  write(std::monostate());
                                  tell(CopyOutcome::Unreadable);
                              }
                          });
    }
}

void ClipboardService::write(const ClipboardOffer &offer)
{
    m_lastChangeCount = m_port.write(offer);
}

void ClipboardService::togglePin(const QUuid &id)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    m_items[index].pinned = !m_items[index].pinned;
    m_store.setPinned(id, m_items[index].pinned);
    Q_EMIT itemChanged(index);
}

void ClipboardService::remove(const QUuid &id)
{
    eraseUndoably([&](const ClipItem &item) { return item.id == id; });
}

void ClipboardService::clearUnpinned()
{
    eraseUndoably([](const ClipItem &item) { return !item.pinned; });
}

void ClipboardService::eraseUndoably(const std::function<bool(const ClipItem &)> &isErased)
{
    const Items before = m_items;
    Items removed;
    std::copy_if(before.begin(), before.end(), std::back_inserter(removed), isErased);
    if (removed.isEmpty())
        return;
    m_undo.emplace(before, std::move(removed));
    m_isUnsettled = true;
    m_undoLapse = m_scheduler.after(kUndoLife, this, [this] { settle(); });
    m_store.remove(takeFromList(isErased), ClipboardStore::Erasure::Undoable);
}

bool ClipboardService::canUndo() const
{
    return m_undo && !m_undo->removed().isEmpty();
}

void ClipboardService::undo()
{
    if (!canUndo())
        return;
    const ClipboardUndo undo = *std::exchange(m_undo, std::nullopt);
    for (const ClipItem &item : undo.removed()) {
        const int index = undo.place(item, m_items);
        m_items.insert(index, item);
        Q_EMIT itemInserted(index);
    }
    QList<QUuid> order;
    for (const ClipItem &item : std::as_const(m_items))
        order.append(item.id);
    m_store.restore(undo.removed(), order);
}

void ClipboardService::forgetUndo()
{
    m_undo.reset();
    m_undoLapse.cancel();
}

void ClipboardService::settle()
{
    forgetUndo();
    if (std::exchange(m_isUnsettled, false))
        m_store.settle();
}

void ClipboardService::erase(const QUuid &id, Saved saved)
{
    const QUuid erased = id; // the caller's may lie in the list
    if (m_undo)
        m_undo->forget(erased);
    takeFromList([&](const ClipItem &item) { return item.id == erased; });
    m_store.remove({erased}, ClipboardStore::Erasure::Final);
    if (saved)
        m_store.whenSaved(this, std::move(saved));
}

void ClipboardService::eraseAll(bool includingPinned, Saved saved)
{
    forgetUndo();
    m_isUnsettled = false;
    passOverUnderway();
    const QList<QUuid> erased = takeFromList([&](const ClipItem &item) { return includingPinned || !item.pinned; });
    if (includingPinned)
        m_store.removeAll();
    else
        m_store.settleAndRemove(erased);
    if (saved)
        m_store.whenSaved(this, std::move(saved));
}

/// What was copied so far and is still being noticed, read or compared.
void ClipboardService::passOverUnderway()
{
    ++m_passedOver;
    m_captures.clear();
    m_poll.cancel();
    m_lastChangeCount = m_port.changeCount();
}

void ClipboardService::readImage(const QUuid &id, const QObject *context,
                                 std::function<void(std::optional<QByteArray>)> answer)
{
    m_store.readImage(id, context, std::move(answer));
}

void ClipboardService::setImagePixelSize(const QUuid &id, const QSize &size)
{
    const int index = indexOf(id);
    if (index < 0 || !m_items[index].image || m_items[index].image->pixelSize == size)
        return;
    m_items[index].image->pixelSize = size;
    Q_EMIT itemChanged(index);
}

int ClipboardService::indexOf(const QUuid &id) const
{
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [&](const ClipItem &item) { return item.id == id; });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

} // namespace ostrelle
