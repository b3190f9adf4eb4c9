#include "media_client/HelperPool.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "media_client/HelperGuess.h"
#include "media_client/HelperProcess.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr auto kIdleLife = 4s;
/// Most files take less than a tenth of that.
constexpr auto kSlow = 1s;

/// What one file may take. The helper's own limit of CPU time comes first unless it hangs.
struct Patience
{
    std::chrono::seconds deadline;
    std::uint32_t cpuSeconds;
    /// More for the first file of a helper: on a busy machine, or the first time since the machine was started, the
    /// heavy one was seen to need more than two seconds to load.
    std::chrono::seconds forStart = 0s;
};

constexpr Patience patienceWith(HelperKind kind, HelperCommand command)
{
    if (command == HelperCommand::AudioInfo || command == HelperCommand::ImageInfo)
        return {2s, 2, 3s};
    return kind == HelperKind::Extra ? Patience{20s, 12} : Patience{10s, 6};
}

MediaFailure failureOf(HelperStatus status)
{
    switch (status) {
    case HelperStatus::NoPicture:
        return MediaFailure::NoPicture;
    case HelperStatus::Broken:
        return MediaFailure::Broken;
    case HelperStatus::TooLarge:
    case HelperStatus::OutOfMemory:
        return MediaFailure::TooLarge;
    default:
        return MediaFailure::Unsupported;
    }
}

} // namespace

HelperPool::HelperPool(TaskScheduler &scheduler, QString folder, int size, HelperPriority priority, Taker taker)
    : m_scheduler(scheduler)
    , m_folder(std::move(folder))
    , m_priority(priority)
    , m_taker(std::move(taker))
    , m_slots(static_cast<std::size_t>(size))
{
}

HelperPool::~HelperPool() = default;

int HelperPool::countOf(HelperKind kind) const
{
    return static_cast<int>(std::count_if(m_slots.begin(), m_slots.end(),
                                          [kind](const Slot &slot) { return slot.process && slot.kind == kind; }));
}

bool HelperPool::isFull() const
{
    const auto busy =
        std::count_if(m_slots.begin(), m_slots.end(), [](const Slot &slot) { return slot.job && !slot.isSlow; });
    return m_priority == HelperPriority::Background && busy >= std::max(QThread::idealThreadCount() - 1, 1);
}

bool HelperPool::hand(HelperKind kind, const IsNeeded &isNeeded, quint64 number, HelperRequest request, int file)
{
    Slot *slot = isFull() ? nullptr : slotFor(kind, isNeeded);
    if (!slot)
        return false;
    const Patience patience = patienceWith(kind, request.command);
    request.id = ++m_lastRequest;
    request.cpuSeconds = patience.cpuSeconds;
    slot->job = number;
    if (!slot->process->ask(request, file)) {
        // Told from the event loop, as every failure is.
        slot->deadline = m_scheduler.after(0s, this, [this, slot] { fail(*slot, MediaFailure::HelperMissing); });
        return true;
    }
    const auto deadline = patience.deadline + (slot->hasAnswered ? 0s : patience.forStart);
    slot->deadline = m_scheduler.after(deadline, this, [this, slot] { fail(*slot, MediaFailure::TimedOut); });
    slot->slowness = m_scheduler.after(kSlow, this, [this, slot] {
        slot->isSlow = true;
        Q_EMIT roomMade();
    });
    return true;
}

/// An idle helper of the kind, a new one, or a new one in the place of an idle one of another kind, which has to be one
/// of several where its kind is still needed.
HelperPool::Slot *HelperPool::slotFor(HelperKind kind, const IsNeeded &isNeeded)
{
    Slot *chosen = nullptr;
    for (Slot &slot : m_slots) {
        if (!slot.process)
            chosen = &slot;
        else if (!slot.job && slot.kind == kind)
            return &slot;
    }
    for (Slot &slot : m_slots) {
        if (!chosen && !slot.job && (!isNeeded(slot.kind) || (countOf(kind) == 0 && countOf(slot.kind) > 1)))
            chosen = &slot;
    }
    if (chosen)
        start(*chosen, kind);
    return chosen;
}

void HelperPool::start(Slot &slot, HelperKind kind)
{
    retire(slot);
    slot.kind = kind;
    slot.hasAnswered = false;
    slot.process = &makeChild<HelperProcess>(this, executableOf(kind, m_folder), m_priority);
    connect(slot.process, &HelperProcess::lost, this, [this, &slot] {
        fail(slot, slot.process->hasFailedToStart() ? MediaFailure::HelperMissing : MediaFailure::HelperLost);
    });
    connect(slot.process, &HelperProcess::answered, this,
            [this, &slot](const HelperAnswer &answer, const QByteArray &payload) {
                HelperReply reply;
                reply.isDeclined = answer.status == HelperStatus::Declined;
                if (answer.status != HelperStatus::Done && !reply.isDeclined)
                    reply.failure = failureOf(answer.status);
                reply.answer = answer;
                reply.payload = payload;
                deliver(slot, std::move(reply));
            });
}

void HelperPool::retire(Slot &slot)
{
    slot.deadline.cancel();
    if (HelperProcess *process = std::exchange(slot.process, nullptr))
        process->retire();
}

void HelperPool::fail(Slot &slot, MediaFailure failure)
{
    retire(slot);
    HelperReply reply;
    reply.failure = failure;
    if (const std::optional<quint64> number = endJob(slot))
        m_taker(*number, std::move(reply));
}

std::optional<quint64> HelperPool::endJob(Slot &slot)
{
    slot.slowness.cancel();
    slot.isSlow = false;
    return std::exchange(slot.job, std::nullopt);
}

void HelperPool::deliver(Slot &slot, HelperReply reply)
{
    const std::optional<quint64> number = endJob(slot);
    slot.hasAnswered = true;
    slot.deadline = m_scheduler.after(kIdleLife, this, [this, &slot] { retire(slot); });
    if (number)
        m_taker(*number, std::move(reply));
}

} // namespace ostrelle
