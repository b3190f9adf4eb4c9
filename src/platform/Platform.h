#pragma once

#include <functional>
#include <memory>

class QString;

namespace ostrelle {

class AlertSound;
class ClipboardPort;
class ColourPicker;
class DesktopAppearance;
class DragOut;
class DragSense;
class DragText;
class FileChooser;
class FileDrags;
class FileIcons;
class FileOpening;
class Frontmost;
class Haptics;
class HotKeys;
class KeyboardLayout;
class OrdinaryWindows;
class OutsideActivity;
class PanelHost;
class PointerNear;
class Popups;
class Screens;

/// All desktop services of one backend. Created after the application object, destroyed before it.
class Platform
{
public:
    /// The backend that PlatformStart::prepare() named; null when it cannot run here. `keeperPath` is the executable
    /// that keeps the clipboard.
    static std::unique_ptr<Platform> create(const QString &backend, const QString &keeperPath);

    virtual ~Platform() = default;

    virtual PanelHost &panelHost() = 0;
    virtual Popups &popups() = 0;
    virtual OutsideActivity &outsideActivity() = 0;
    virtual PointerNear &pointerNear() = 0;
    virtual DragSense &dragSense() = 0;
    virtual FileDrags &fileDrags() = 0;
    virtual DragOut &dragOut() = 0;
    virtual DragText &dragText() = 0;
    virtual ClipboardPort &clipboard() = 0;
    virtual Frontmost &frontmost() = 0;
    virtual Screens &screens() = 0;
    virtual DesktopAppearance &appearance() = 0;
    virtual FileIcons &fileIcons() = 0;
    virtual FileOpening &fileOpening() = 0;
    virtual FileChooser &fileChooser() = 0;
    virtual ColourPicker &colourPicker() = 0;
    virtual Haptics &haptics() = 0;
    virtual AlertSound &alertSound() = 0;
    virtual KeyboardLayout &keyboardLayout() = 0;
    virtual HotKeys &hotKeys() = 0;
    virtual OrdinaryWindows &ordinaryWindows() = 0;

    /// Whether the display server is a guest of another one, as Xwayland is, which keeps the keys and the picture of
    /// the screens to itself.
    virtual bool isGuest() const = 0;

    /// What must still happen when the display is lost: called once, on the main thread, outside the event loop. The
    /// process ends with a non-zero status right after it.
    virtual void setDisplayLostHandler(std::function<void()> handler) = 0;
};

} // namespace ostrelle
