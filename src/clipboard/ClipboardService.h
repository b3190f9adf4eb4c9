#pragma once

#include "clipboard/ClipboardCapture.h"
#include "clipboard/ClipboardUndo.h"
#include "foundation/SaveRetry.h"
#include "foundation/Task.h"
#include "foundation/TaskScheduler.h"
#include "platform/ClipboardPort.h"
#include "records/ClipItem.h"

#include <QList>
#include <QObject>
#include <QPropertyNotifier>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {

class ClipboardStore;
class SettingsStore;

/// The history of what is copied anywhere: watches the clipboard, applies the privacy rules, folds repeats, keeps the
/// limit, stores. Observes clipboardEnabled by itself. The stored history is there a moment after the start; what is
/// copied before is recorded then. Main thread; no call but finishLoading() waits for another program or the disk.
class ClipboardService : public QObject
{
    Q_OBJECT
public:
    ClipboardService(SettingsStore &settings, ClipboardPort &port, ClipboardStore &store, TaskScheduler &scheduler,
                     ClipImages &images, QObject *parent = nullptr);
    ~ClipboardService() override;

    /// Calls once the stored history is there: at once or later, and not when `context` is gone.
    void whenLoaded(const QObject *context, std::function<void()> call);
    void finishLoading();
    bool isLoaded() const { return m_isLoaded; }
    /// Newest capture first.
    const QList<ClipItem> &items() const;

    void start();
    void stop();
    enum class CopyOutcome {
        Done,
        Overtaken, ///< something newer was copied while an image was read; it stays
        Unreadable ///< the item is gone, or its image does not decode
    };
    using Copied = std::function<void(CopyOutcome outcome)>;
    /// Puts the item back on the clipboard without recording it again. `copied` hears when it is there, or why not:
    /// before this returns, or once an image has been read.
    void copy(const QUuid &id, const Copied &copied = {});
    void togglePin(const QUuid &id);
    /// Undoable erasures by the tool, until settle(), 30 s later, or quit.
    void remove(const QUuid &id);
    void clearUnpinned();
    bool canUndo() const;
    /// Brings back what the last remove() or clearUnpinned() took.
    void undo();
    /// What was erased can no longer be undone and leaves the disk (the panel closed).
    void settle();
    using Saved = std::function<void(bool isSaved)>;
    /// Final erasures by command line, settings or quit. `saved` hears when they are off the disk, or that they cannot
    /// be.
    void erase(const QUuid &id, Saved saved = {});
    /// What was copied before and is not recorded yet never is.
    void eraseAll(bool includingPinned, Saved saved = {});

    /// The raw bytes of an item's image, read off the main thread.
    void readImage(const QUuid &id, const QObject *context, std::function<void(std::optional<QByteArray>)> answer);
    /// Tells what a decoder found; changes the item's detail.
    void setImagePixelSize(const QUuid &id, const QSize &size);

Q_SIGNALS:
    void itemsReset();
    void itemInserted(int index);
    void itemRemoved(int index);
    void itemMoved(int from, int to);
    void itemChanged(int index);

private:
    using Items = QList<ClipItem>;

    void adopt(const QList<ClipItem> &stored);
    void followEnabled();
    void schedulePoll();
    void poll();
    void recordFinished();
    void record(CapturedClip clip);
    void recordImage(CapturedClip clip);
    void insert(const CapturedClip &clip);
    void moveToTop(int index, double date);
    void trim();
    QList<QUuid> takeFromList(const std::function<bool(const ClipItem &)> &isTaken);
    void eraseUndoably(const std::function<bool(const ClipItem &)> &isErased);
    void forgetUndo();
    void passOverUnderway();
    void write(const ClipboardOffer &offer);
    int indexOf(const QUuid &id) const;

    SettingsStore &m_settings;
    ClipboardPort &m_port;
    ClipboardStore &m_store;
    TaskScheduler &m_scheduler;
    ClipImages &m_images;

    Items m_items;
    bool m_isLoaded = false;
    std::vector<std::function<void()>> m_awaitingLoad;
    qint64 m_lastChangeCount;
    /// Since when polls are due every half second; nothing while stopped.
    std::optional<MonotonicTime> m_started;
    /// In the order of the copies. Each is recorded only when those before it are.
    std::deque<std::unique_ptr<ClipboardCapture>> m_captures;
    bool m_isComparing = false; ///< the store is looking for an equal image of the copy before those
    int m_passedOver = 0;       ///< how often what was under way was
    int m_writeNumber = 0;
    std::optional<ClipboardUndo> m_undo;
    bool m_isUnsettled = false;

    Task m_poll;
    Task m_undoLapse;
    SaveRetry m_retry;
    QPropertyNotifier m_enabledNotifier;
};

} // namespace ostrelle
