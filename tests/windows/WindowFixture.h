#pragma once

#include "PanelFixture.h"
#include "core/ForegroundSession.h"
#include "shortcuts/ShortcutActions.h"
#include "shortcuts/ShortcutService.h"
#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"

#include <QAbstractButton>
#include <QTest>

namespace ostrelle {

/// A window over the real stores, on a desktop of fakes, and what a user does with its controls.
struct WindowFixture : ControlFixture, private ShortcutActions
{
    ForegroundSession foreground;
    FakeHotKeys hotKeys;
    FakeKeyboardLayout layout;
    QStringList doings; ///< of shortcuts
    ShortcutService shortcuts{database, hotKeys, layout, *this};

    WindowFixture()
    {
        shortcuts.start();
        controller.start(panel);
    }

    virtual QWidget &window() const = 0;
    /// What was begun comes to its end.
    virtual void rest() { settle(); }

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
        rest();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QWidget *focused = window().focusWidget();
        QTest::keyClick(focused != nullptr ? focused : &window(), key, modifiers);
    }

private:
    void toggleNotch(const ActivationToken &) override { doings << QStringLiteral("toggle"); }
    void openClipboard(const ActivationToken &) override { doings << QStringLiteral("clipboard"); }
    void pickColor(const ActivationToken &) override { doings << QStringLiteral("color"); }
};

} // namespace ostrelle
