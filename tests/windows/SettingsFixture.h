#pragma once

#include "WindowFixture.h"
#include "clipboard/ClipboardService.h"
#include "core/LaunchAtLogin.h"
#include "records/ClipboardStore.h"
#include "support/FakeClipImages.h"
#include "support/FakeFeedSource.h"
#include "support/FakeLoginItem.h"
#include "windows/SettingsWindowController.h"
#include "windows/controls/PopupPicker.h"

#include <QMenu>

namespace ostrelle {

/// The settings window over the real stores, on a desktop of fakes.
struct SettingsFixture : WindowFixture
{
    FakeLoginItem loginItem;
    LaunchAtLogin launch{loginItem};
    FakeClipImages images{clock};
    ClipboardStore store{folder.path()};
    ClipboardService history{settings, clipboard, store, clock, images};
    int quits = 0;
    FakeFeedSource updateServer;
    UpdateService updates{settings,
                          clock,
                          updateServer,
                          {QUrl(QStringLiteral("https://feed.example/version.json")),
                           QUrl(QStringLiteral("https://home.example/")), QStringLiteral("1.4")}};
    SettingsWindowController controllerOfWindow{SettingsSurroundings{.settings = settings,
                                                                     .appearance = appearance,
                                                                     .scheduler = clock,
                                                                     .launchAtLogin = launch,
                                                                     .shortcuts = shortcuts,
                                                                     .keyboardLayout = layout,
                                                                     .updates = updates,
                                                                     .opening = platform.fileOpening(),
                                                                     .clipboard = history,
                                                                     .pasteboard = clipboard,
                                                                     .popups = platform.popups(),
                                                                     .dragOut = platform.dragOut(),
                                                                     .dragText = platform.dragText(),
                                                                     .quit = [this] { ++quits; }},
                                                controller, foreground, platform.ordinaryWindows()};

    SettingsFixture() { history.finishLoading(); }

    QWidget &open(SettingsSection section)
    {
        controllerOfWindow.show(section);
        settle();
        return window();
    }
    /// The tests' way to what only the controller may change.
    QWidget &window() const override { return const_cast<SettingsWindow &>(*controllerOfWindow.window()); }
    /// Chooses from the list that a picker opens.
    void choose(const QString &picker, const QString &choice)
    {
        QTest::mouseClick(&button(picker), Qt::LeftButton);
        for (QAction *action : platform.popups().menu()->actions()) {
            if (action->text() == choice)
                action->trigger();
        }
        platform.popups().menu()->close();
        settle();
    }
};

} // namespace ostrelle
