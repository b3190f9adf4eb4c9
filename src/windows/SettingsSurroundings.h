#pragma once

#include <functional>

namespace ostrelle {

class ClipboardPort;
class ClipboardService;
class LaunchAtLogin;
class NotchAppearance;
class Popups;
class SettingsStore;
class TaskScheduler;

/// What the settings window shows and changes. All of it outlives the window.
struct SettingsSurroundings
{
    SettingsStore &settings;
    NotchAppearance &appearance;
    TaskScheduler &scheduler;
    LaunchAtLogin &launchAtLogin;
    ClipboardService &clipboard;
    ClipboardPort &pasteboard;
    Popups &popups;
    std::function<void()> quit;
};

} // namespace ostrelle
