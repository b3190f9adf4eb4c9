#pragma once

#include <QObject>

#include <functional>
#include <optional>

namespace ostrelle {

/// A colour in sRGB, components 0 ... 1, not rounded.
struct PickedColour
{
    double red = 0;
    double green = 0;
    double blue = 0;
    friend bool operator==(const PickedColour &, const PickedColour &) = default;
};

/// The desktop's colour loupe: the user points at a pixel of any screen. One at a time. Main thread.
class ColourPicker
{
public:
    /// What a pick tells, each on the main thread and never from within pick().
    struct Handlers
    {
        std::function<void(const PickedColour &)> gathered; ///< picked with Shift: the loupe stays for another
        /// Once, when the loupe has closed: the last colour picked; none when there was none, or nothing can be picked
        /// here.
        std::function<void(std::optional<PickedColour>)> finished;
    };

    virtual ~ColourPicker() = default;

    /// Opens the loupe; false, and nothing is called, while one is open. Nothing is called when `context` is gone by
    /// then; the loupe closes with it.
    virtual bool pick(QObject *context, Handlers handlers) = 0;
};

} // namespace ostrelle
