#include "files/PresenceWorkers.h"

#include "files/PathWalk.h"

#include <QMetaObject>
#include <QObject>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace ostrelle {
namespace {

// So that no thread that is merely busy is caught by the end of the process.
constexpr std::chrono::milliseconds kLeaveTime(50);

const QByteArray kRoot = QByteArrayLiteral("/");

} // namespace

/// Everything but `lookUp` is guarded by `mutex`.
struct PresenceWorkers::State
{
    /// What is to be asked in one mount.
    struct Lane
    {
        std::deque<PathWalk> waiting;
        bool hasThread = false;
    };

    using Lock = std::unique_lock<std::mutex>;

    static void enqueue(const std::shared_ptr<State> &state, const QByteArray &mount, PathWalk walk);
    static void startThreads(const std::shared_ptr<State> &state);
    static void work(const std::shared_ptr<State> &state, const QByteArray &mount);
    void renew(Lock &lock);
    void tell(const QString &path, const FileFacts &facts);

    std::unique_ptr<FileLookUp> lookUp;
    std::mutex mutex;
    std::condition_variable threadEnded;
    QObject *receiver = nullptr; ///< null once nobody wants to know
    std::function<void(const QList<Found> &)> found;
    std::map<QByteArray, Lane> lanes;
    int threadCount = 0;
    PathWalk::Mounts mounts;
    bool mountsAreOld = true;
    QList<Found> answers;
};

void PresenceWorkers::State::enqueue(const std::shared_ptr<State> &state, const QByteArray &mount, PathWalk walk)
{
    state->lanes[mount].waiting.push_back(std::move(walk));
}

void PresenceWorkers::State::startThreads(const std::shared_ptr<State> &state)
{
    for (auto &[mount, lane] : state->lanes) {
        if (state->threadCount == kThreadLimit)
            return;
        if (lane.hasThread || lane.waiting.empty())
            continue;
        lane.hasThread = true;
        ++state->threadCount;
        std::thread([state, key = mount] { work(state, key); }).detach();
    }
}

void PresenceWorkers::State::work(const std::shared_ptr<State> &state, const QByteArray &mount)
{
    Lock lock(state->mutex);
    while (state->receiver && !state->lanes[mount].waiting.empty()) {
        PathWalk walk = std::move(state->lanes[mount].waiting.front());
        state->lanes[mount].waiting.pop_front();
        if (state->mountsAreOld)
            state->renew(lock);
        const PathWalk::Mounts mounts = state->mounts;
        lock.unlock();
        const std::optional<FileFacts> facts = walk.advance(mount, mounts, *state->lookUp);
        lock.lock();
        if (facts) {
            state->tell(walk.path(), *facts);
        } else {
            const QByteArray next = walk.nextMount(mounts);
            enqueue(state, next, std::move(walk));
            startThreads(state);
        }
    }
    state->lanes.erase(mount);
    --state->threadCount;
    if (state->receiver)
        startThreads(state);
    state->threadEnded.notify_all();
}

void PresenceWorkers::State::renew(Lock &lock)
{
    mountsAreOld = false;
    lock.unlock();
    const QList<QByteArray> points = lookUp->mountPoints();
    lock.lock();
    mounts = PathWalk::Mounts(points.begin(), points.end());
}

void PresenceWorkers::State::tell(const QString &path, const FileFacts &facts)
{
    if (!receiver)
        return;
    answers.append({path, facts});
    if (answers.size() > 1)
        return;
    QMetaObject::invokeMethod(
        receiver,
        [this] {
            Lock lock(mutex);
            const QList<Found> batch = std::exchange(answers, {});
            lock.unlock();
            found(batch);
        },
        Qt::QueuedConnection);
}

PresenceWorkers::PresenceWorkers(std::unique_ptr<FileLookUp> lookUp, QObject *receiver,
                                 std::function<void(const QList<Found> &)> found)
    : m_state(std::make_shared<State>())
{
    m_state->lookUp = std::move(lookUp);
    m_state->receiver = receiver;
    m_state->found = std::move(found);
}

PresenceWorkers::~PresenceWorkers()
{
    State::Lock lock(m_state->mutex);
    m_state->receiver = nullptr;
    m_state->threadEnded.wait_for(lock, kLeaveTime, [this] { return m_state->threadCount == 0; });
}

void PresenceWorkers::post(const QStringList &paths)
{
    const State::Lock lock(m_state->mutex);
    for (const QString &path : paths)
        State::enqueue(m_state, kRoot, PathWalk(path));
    State::startThreads(m_state);
}

void PresenceWorkers::renewMounts()
{
    const State::Lock lock(m_state->mutex);
    m_state->mountsAreOld = true;
}

} // namespace ostrelle
