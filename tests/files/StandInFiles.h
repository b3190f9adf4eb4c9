#pragma once

#include "files/FileLookUp.h"

#include <QByteArray>
#include <QMap>
#include <QSet>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace ostrelle {

/// A file system in memory whose mounts can go dead: whoever asks for something in one hangs until it is revived.
class StandInFiles
{
public:
    using Entry = FileLookUp::Entry;

    StandInFiles()
        : m_state(std::make_shared<State>())
    {
    }
    ~StandInFiles() { revive(); }
    StandInFiles(const StandInFiles &) = delete;
    StandInFiles &operator=(const StandInFiles &) = delete;

    /// A file with the folders above it.
    void add(const QByteArray &path, Entry::Kind kind = Entry::Kind::Regular, const QByteArray &target = {})
    {
        const std::lock_guard lock(m_state->mutex);
        for (qsizetype end = path.indexOf('/', 1); end > 0; end = path.indexOf('/', end + 1))
            m_state->entries.insert(path.left(end), {Entry::Kind::Folder, {}});
        m_state->entries.insert(path, {kind, target});
    }
    void remove(const QByteArray &path)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->entries.remove(path);
    }
    void mount(const QByteArray &point)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->points.insert(point);
    }
    void kill(const QByteArray &point)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->dead.insert(point);
    }
    void revive()
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->dead.clear();
        m_state->revived.notify_all();
    }
    /// How many threads hang.
    int hangingCount() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->hanging;
    }
    int askedCount() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->asked;
    }

    std::unique_ptr<FileLookUp> lookUp() const { return std::make_unique<LookUp>(m_state); }

private:
    struct State
    {
        bool isDead(const QByteArray &path) const
        {
            return std::any_of(dead.begin(), dead.end(),
                               [&](const QByteArray &point) { return path == point || path.startsWith(point + '/'); });
        }

        mutable std::mutex mutex;
        std::condition_variable revived;
        QMap<QByteArray, Entry> entries;
        QSet<QByteArray> points;
        QSet<QByteArray> dead;
        int hanging = 0;
        int asked = 0;
    };

    class LookUp final : public FileLookUp
    {
    public:
        explicit LookUp(std::shared_ptr<State> state)
            : m_state(std::move(state))
        {
        }
        Entry entry(const QByteArray &path) const override
        {
            std::unique_lock lock(m_state->mutex);
            ++m_state->asked;
            ++m_state->hanging;
            m_state->revived.wait(lock, [&] { return !m_state->isDead(path); });
            --m_state->hanging;
            return m_state->entries.value(path);
        }
        QList<QByteArray> mountPoints() const override
        {
            const std::lock_guard lock(m_state->mutex);
            return m_state->points.values();
        }

    private:
        std::shared_ptr<State> m_state;
    };

    // Shared with threads that hang longer than their owner lives.
    std::shared_ptr<State> m_state;
};

} // namespace ostrelle
