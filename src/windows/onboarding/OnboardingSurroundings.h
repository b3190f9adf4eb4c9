#pragma once

namespace ostrelle {

class NotchAppearance;
class SettingsStore;
class ShortcutService;
class TaskScheduler;

/// What the first run shows and changes. All of it outlives the window.
struct OnboardingSurroundings
{
    SettingsStore &settings;
    NotchAppearance &appearance;
    TaskScheduler &scheduler;
    ShortcutService &shortcuts;
};

} // namespace ostrelle
