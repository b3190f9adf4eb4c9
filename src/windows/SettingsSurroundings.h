#pragma once

#include <functional>

namespace ostrelle {

class ClipboardPort;
class ClipboardService;
class DragOut;
class DragText;
class FileOpening;
class KeyboardLayout;
class LaunchAtLogin;
class NotchAppearance;
class Popups;
class SettingsStore;
class ShortcutService;
class TaskScheduler;
class UpdateService;

/// What the settings window shows and changes. All of it outlives the window.
struct SettingsSurroundings
{
    SettingsStore &settings;
    NotchAppearance &appearance;
    TaskScheduler &scheduler;
    LaunchAtLogin &launchAtLogin;
    ShortcutService &shortcuts;
    const KeyboardLayout &keyboardLayout;
    UpdateService &updates;
    FileOpening &opening;
    ClipboardService &clipboard;
    ClipboardPort &pasteboard;
    Popups &popups;
    DragOut &dragOut;
    DragText &dragText;
    std::function<void()> quit;
};

} // namespace ostrelle
