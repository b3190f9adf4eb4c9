#pragma once

#include <memory>
#include <utility>

namespace ostrelle {

/// Handle of one request whose answer comes later. Owning it keeps the request alive; after cancel(), destruction, or
/// assignment of another request nothing of the old one is called. Cancelling twice is fine. Main thread.
class [[nodiscard]] RequestHandle
{
public:
    /// What is kept per request; its destruction cancels.
    class Entry
    {
    public:
        virtual ~Entry() = default;
    };

    RequestHandle() = default;
    explicit RequestHandle(std::unique_ptr<Entry> entry)
        : m_entry(std::move(entry))
    {
    }

    /// Of a request that another kind of handle stands for.
    template <typename Other>
    static RequestHandle holding(Other other)
    {
        struct Held final : Entry
        {
            explicit Held(Other of)
                : handle(std::move(of))
            {
            }
            Other handle;
        };
        return RequestHandle(std::make_unique<Held>(std::move(other)));
    }

    void cancel() { m_entry.reset(); }

private:
    std::unique_ptr<Entry> m_entry;
};

} // namespace ostrelle
