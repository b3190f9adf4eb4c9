#pragma once

#include "platform/Platform.h"

namespace ostrelle {

/// The X11 backend.
class X11Platform final : public Platform
{
    struct Services;

public:
    /// Null when the application object does not run on X11.
    static std::unique_ptr<Platform> create(const QString &keeperPath);
    explicit X11Platform(std::unique_ptr<Services> services); ///< only create() can make services
    ~X11Platform() override;

    PanelHost &panelHost() override;
    Popups &popups() override;
    OutsideActivity &outsideActivity() override;
    PointerNear &pointerNear() override;
    DragSense &dragSense() override;
    FileDrags &fileDrags() override;
    DragOut &dragOut() override;
    DragText &dragText() override;
    ClipboardPort &clipboard() override;
    Frontmost &frontmost() override;
    Screens &screens() override;
    DesktopAppearance &appearance() override;
    FileIcons &fileIcons() override;
    FileOpening &fileOpening() override;
    FileChooser &fileChooser() override;
    ColourPicker &colourPicker() override;
    Haptics &haptics() override;
    AlertSound &alertSound() override;
    KeyboardLayout &keyboardLayout() override;
    HotKeys &hotKeys() override;
    OrdinaryWindows &ordinaryWindows() override;
    bool isGuest() const override;
    void setDisplayLostHandler(std::function<void()> handler) override;

private:
    std::unique_ptr<Services> m_services;
};

} // namespace ostrelle
