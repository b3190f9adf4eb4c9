#pragma once

#include "foundation/Task.h"
#include "media_client/HelperPriority.h"
#include "media_client/MediaPicture.h"
#include "media_common/HelperProtocol.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace ostrelle {

class HelperProcess;
class TaskScheduler;

enum class HelperKind {
    Facts, ///< ostrelle-media-facts: what headers and tags tell, of the common kinds, starts in two milliseconds
    Light, ///< ostrelle-media: pictures of the common kinds, starts in a few milliseconds
    Sound, ///< ostrelle-media-sound: sound that is decoded or not compressed, of the common kinds
    Extra, ///< ostrelle-media-extra: everything else, starts slowly
};

/// What came of one file.
struct HelperReply
{
    std::optional<MediaFailure> failure; ///< then nothing else counts
    bool isDeclined = false;             ///< the other helper may know it
    HelperAnswer answer;
    QByteArray payload;
};

/// A few helper processes, started on demand and ended a few seconds after their last file. A file that takes too
/// long, or that its helper dies of, costs that helper only: the next file starts another. In the background, one
/// processor is left to others: on two of them the helpers take turns, unless one is slow. Main thread.
class HelperPool : public QObject
{
    Q_OBJECT
public:
    using Taker = std::function<void(quint64 number, HelperReply reply)>;
    using IsNeeded = std::function<bool(HelperKind kind)>;

    /// At most `size` at a time. `taker` gets each reply, from the event loop.
    HelperPool(TaskScheduler &scheduler, QString folder, int size, HelperPriority priority, Taker taker);
    ~HelperPool() override;

    int size() const { return static_cast<int>(m_slots.size()); }

    /// Gives an open file to a helper of this kind; false when it has to wait. The descriptor stays the caller's. Idle
    /// helpers of a kind that `isNeeded` soon are not all ended to make room.
    bool hand(HelperKind kind, const IsNeeded &isNeeded, quint64 number, HelperRequest request, int file);

Q_SIGNALS:
    /// A file takes so long that another one need not wait for it.
    void roomMade();

private:
    struct Slot
    {
        HelperProcess *process = nullptr; ///< a child of the pool
        HelperKind kind = HelperKind::Light;
        std::optional<quint64> job;
        Task deadline; ///< of the job, or of being idle
        Task slowness;
        bool isSlow = false;      ///< has been at its job for long
        bool hasAnswered = false; ///< a file, so it does not take time to start any more
    };

    bool isFull() const;
    Slot *slotFor(HelperKind kind, const IsNeeded &isNeeded);
    int countOf(HelperKind kind) const;
    std::optional<quint64> endJob(Slot &slot);
    void start(Slot &slot, HelperKind kind);
    void retire(Slot &slot);
    void fail(Slot &slot, MediaFailure failure);
    void deliver(Slot &slot, HelperReply reply);

    TaskScheduler &m_scheduler;
    const QString m_folder;
    const HelperPriority m_priority;
    Taker m_taker;
    quint32 m_lastRequest = 0;
    std::vector<Slot> m_slots; ///< its size never changes
};

} // namespace ostrelle
