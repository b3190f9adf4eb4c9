#pragma once

#include "PanelFixture.h"
#include "clipboard/ClipboardService.h"
#include "core/ForegroundSession.h"
#include "core/LaunchAtLogin.h"
#include "records/ClipboardStore.h"
#include "shortcuts/ShortcutActions.h"
#include "shortcuts/ShortcutService.h"
#include "support/FakeClipImages.h"
#include "support/FakeFeedSource.h"
#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"
#include "support/FakeLoginItem.h"
#include "windows/SettingsWindowController.h"
#include "windows/controls/PopupPicker.h"

#include <QMenu>
#include <QTest>

namespace ostrelle {

/// The settings window over the real stores, on a desktop of fakes.
struct SettingsFixture : ControlFixture, private ShortcutActions
{
    FakeLoginItem loginItem;
    LaunchAtLogin launch{loginItem};
    ForegroundSession foreground;
    FakeClipImages images{clock};
    ClipboardStore store{folder.path()};
    ClipboardService history{settings, clipboard, store, clock, images};
    int quits = 0;
    FakeHotKeys hotKeys;
    FakeKeyboardLayout layout;
    QStringList doings; ///< of shortcuts
    ShortcutService shortcuts{database, hotKeys, layout, *this};
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
                                                                     .quit = [this] { ++quits; }},
                                                controller, foreground, platform.ordinaryWindows()};

    SettingsFixture()
    {
        history.finishLoading();
        shortcuts.start();
        controller.start(panel);
    }

    QWidget &open(SettingsSection section)
    {
        controllerOfWindow.show(section);
        settle();
        return window();
    }
    /// The tests' way to what only the controller may change.
    QWidget &window() const { return const_cast<SettingsWindow &>(*controllerOfWindow.window()); }

    template <typename Widget>
    Widget *find(const QString &accessibleName) const
    {
        for (Widget *widget : window().findChildren<Widget *>()) {
            if (widget->isVisible() && widget->accessibleName() == accessibleName)
                return widget;
        }
        return nullptr;
    }
    QAbstractButton &button(const QString &accessibleName) const
    {
        auto *found = find<QAbstractButton>(accessibleName);
        if (found == nullptr)
            qFatal("no such control: %s", qPrintable(accessibleName));
        return *found;
    }
    void click(const QString &accessibleName)
    {
        QTest::mouseClick(&button(accessibleName), Qt::LeftButton);
        settle();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QWidget *focused = window().focusWidget();
        QTest::keyClick(focused != nullptr ? focused : &window(), key, modifiers);
    }
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

private:
    void toggleNotch(const ActivationToken &) override { doings << QStringLiteral("toggle"); }
    void openClipboard(const ActivationToken &) override { doings << QStringLiteral("clipboard"); }
    void pickColor(const ActivationToken &) override { doings << QStringLiteral("color"); }
};

} // namespace ostrelle
