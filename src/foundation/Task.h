#pragma once

#include <memory>
#include <utility>

namespace ostrelle {

/// Handle of one scheduled task. Owning it keeps the task alive; after cancel(), destruction, or assignment of another
/// task nothing of the old one is called. Cancelling twice is fine. Main thread only.
class [[nodiscard]] Task
{
public:
    /// What a scheduler keeps per task.
    class Entry
    {
    public:
        virtual ~Entry() = default;
        virtual bool isPending() const = 0;
    };

    Task() = default;
    explicit Task(std::unique_ptr<Entry> entry)
        : m_entry(std::move(entry))
    {
    }

    void cancel() { m_entry.reset(); }
    /// True until the task has fired for the last time or was cancelled.
    bool isPending() const { return m_entry && m_entry->isPending(); }

private:
    std::unique_ptr<Entry> m_entry;
};

} // namespace ostrelle
