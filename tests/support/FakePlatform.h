#pragma once

#include "platform/Platform.h"
#include "support/FakeAlertSound.h"
#include "support/FakeColourPicker.h"
#include "support/FakeDesktopAppearance.h"
#include "support/FakeDragOut.h"
#include "support/FakeDragSense.h"
#include "support/FakeDragText.h"
#include "support/FakeFileChooser.h"
#include "support/FakeFileDrags.h"
#include "support/FakeFileIcons.h"
#include "support/FakeFileOpening.h"
#include "support/FakeFrontmost.h"
#include "support/FakeHaptics.h"
#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"
#include "support/FakeOrdinaryWindows.h"
#include "support/FakeOutsideActivity.h"
#include "support/FakePanelHost.h"
#include "support/FakePointerNear.h"
#include "support/FakePopups.h"
#include "support/FakeScreens.h"

namespace ostrelle {

/// All fakes together; the clipboard is the test's own.
class FakePlatform final : public Platform
{
public:
    explicit FakePlatform(ClipboardPort &clipboardPort)
        : m_clipboard(clipboardPort)
    {
    }

    FakePanelHost &panelHost() override { return m_panelHost; }
    FakePopups &popups() override { return m_popups; }
    FakeOutsideActivity &outsideActivity() override { return m_outsideActivity; }
    FakePointerNear &pointerNear() override { return m_pointerNear; }
    FakeDragSense &dragSense() override { return m_dragSense; }
    FakeFileDrags &fileDrags() override { return m_fileDrags; }
    FakeDragOut &dragOut() override { return m_dragOut; }
    FakeDragText &dragText() override { return m_dragText; }
    ClipboardPort &clipboard() override { return m_clipboard; }
    FakeFrontmost &frontmost() override { return m_frontmost; }
    FakeScreens &screens() override { return m_screens; }
    FakeDesktopAppearance &appearance() override { return m_appearance; }
    FakeFileIcons &fileIcons() override { return m_fileIcons; }
    FakeFileOpening &fileOpening() override { return m_fileOpening; }
    FakeFileChooser &fileChooser() override { return m_fileChooser; }
    FakeColourPicker &colourPicker() override { return m_colourPicker; }
    FakeHaptics &haptics() override { return m_haptics; }
    FakeAlertSound &alertSound() override { return m_alertSound; }
    FakeKeyboardLayout &keyboardLayout() override { return m_keyboardLayout; }
    FakeHotKeys &hotKeys() override { return m_hotKeys; }
    FakeOrdinaryWindows &ordinaryWindows() override { return m_ordinaryWindows; }

    bool isGuest() const override { return false; }
    void setDisplayLostHandler(std::function<void()> handler) override { m_displayLost = std::move(handler); }
    /// The display goes away.
    void loseDisplay();

private:
    ClipboardPort &m_clipboard;
    FakeScreens m_screens;
    FakePanelHost m_panelHost{m_screens};
    FakePopups m_popups;
    FakeOutsideActivity m_outsideActivity;
    FakePointerNear m_pointerNear;
    FakeDragSense m_dragSense;
    FakeFileDrags m_fileDrags;
    FakeDragOut m_dragOut;
    FakeDragText m_dragText;
    FakeFrontmost m_frontmost;
    FakeDesktopAppearance m_appearance;
    FakeFileIcons m_fileIcons;
    FakeFileOpening m_fileOpening;
    FakeFileChooser m_fileChooser;
    FakeColourPicker m_colourPicker;
    FakeHaptics m_haptics;
    FakeAlertSound m_alertSound;
    FakeKeyboardLayout m_keyboardLayout;
    FakeHotKeys m_hotKeys;
    FakeOrdinaryWindows m_ordinaryWindows;
    std::function<void()> m_displayLost;
};

} // namespace ostrelle
