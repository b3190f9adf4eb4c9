#pragma once

#include "platform/ColourPicker.h"

#include <QPointer>

#include <utility>

namespace ostrelle {

/// A loupe that the test points.
class FakeColourPicker final : public ColourPicker
{
public:
    bool pick(QObject *context, Handlers handlers) override
    {
        if (isOpen() || !m_canOpen) {
            return false;
        }
        m_context = context;
        m_handlers = std::move(handlers);
        m_last.reset();
        return true;
    }

    bool isOpen() const { return !m_context.isNull(); }
    /// Another program's loupe is open: none opens here.
    void setCanOpen(bool can) { m_canOpen = can; }
    /// The user clicks on that colour.
    void choose(const PickedColour &colour)
    {
        m_last = colour;
        close();
    }
    /// The user clicks on it with Shift held: the loupe stays.
    void gather(const PickedColour &colour)
    {
        if (isOpen()) {
            m_last = colour;
            m_handlers.gathered(colour);
        }
    }
    /// The user presses Escape: what was gathered stays picked.
    void close()
    {
        // A handler may open the loupe again.
        const Handlers handlers = std::exchange(m_handlers, {});
        if (std::exchange(m_context, nullptr)) {
            handlers.finished(std::exchange(m_last, {}));
        }
    }

private:
    bool m_canOpen = true;
    QPointer<QObject> m_context; ///< of the open loupe
    Handlers m_handlers;
    std::optional<PickedColour> m_last;
};

} // namespace ostrelle
