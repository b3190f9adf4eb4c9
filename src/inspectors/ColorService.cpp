#include "inspectors/ColorService.h"

#include "foundation/DefaultsDatabase.h"
#include "notch/NotchController.h"
#include "platform/ColourPicker.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace ostrelle {
namespace {

SampledColor sampledColor(const PickedColour &colour)
{
    return {colour.red, colour.green, colour.blue};
}

} // namespace

ColorService::ColorService(DefaultsDatabase &defaults, ColourPicker &picker, NotchController &controller,
                           QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_picker(picker)
    , m_controller(controller)
    , m_lists(ColorLists::load(defaults))
{
}

void ColorService::sample(const QObject *context, const Completion &completion)
{
    if (isSampling())
        return;
    const auto finished = [this](const std::optional<PickedColour> &colour) {
        finish(colour ? std::optional(sampledColor(*colour)) : std::nullopt);
    };
    const auto gathered = [this](const PickedColour &colour) { record(sampledColor(colour)); };
    auto loupe = std::make_unique<QObject>();
    if (!m_picker.pick(loupe.get(), {.gathered = gathered, .finished = finished}))
        return;
    m_loupe = std::move(loupe);
    m_completion = [guard = QPointer<const QObject>(context), completion](const std::optional<SampledColor> &color) {
        if (guard && completion)
            completion(color);
    };
    m_isSampling = true;
    m_controller.suppressAutoCollapse();
}

void ColorService::cancelSampling()
{
    if (isSampling())
        finish(std::nullopt);
}

void ColorService::finish(const std::optional<SampledColor> &color)
{
    m_loupe.reset();
    m_isSampling = false;
    m_controller.releaseAutoCollapse(std::chrono::nanoseconds::zero());
    if (color) {
        record(*color);
        Q_EMIT sampled(*color);
    }
    // Another loupe may be opened from inside.
    const Completion completion = std::exchange(m_completion, {});
    completion(color);
}

void ColorService::record(const SampledColor &color)
{
    ColorLists changed = lists();
    changed.record(color);
    put(changed);
}

void ColorService::toggleFavorite(const SampledColor &color)
{
    m_undo.append(favorites());
    ColorLists changed = lists();
    changed.toggleFavorite(color);
    put(changed);
}

void ColorService::clearRecents()
{
    put({.recents = {}, .favorites = favorites()});
}

void ColorService::clearFavorites()
{
    put({.recents = recents(), .favorites = {}});
}

void ColorService::undo()
{
    if (canUndo())
        put({.recents = recents(), .favorites = m_undo.takeLast()});
}

void ColorService::lapse()
{
    m_undo.clear();
}

void ColorService::put(const ColorLists &lists)
{
    const bool areRecentsNew = lists.recents != recents();
    m_lists = lists;
    persist();
    if (areRecentsNew)
        Q_EMIT recentsChanged();
}

void ColorService::persist()
{
    lists().store(m_defaults);
}

} // namespace ostrelle
