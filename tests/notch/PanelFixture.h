#pragma once

#include "NotchFixture.h"
#include "foundation/MakeChild.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchPanel.h"
#include "notch/ToolRegistry.h"
#include "notch/ToolView.h"
#include "support/FakeFeedSource.h"
#include "updates/UpdateService.h"

#include <QApplication>
#include <QEnterEvent>
#include <QTest>

namespace ostrelle {

/// The controls' surroundings without a panel.
struct ControlFixture : NotchFixture
{
    FrameClock frames{clock};
    NotchAppearance appearance{settings, platform.appearance()};
    ControlContext context{appearance, frames};

    /// Puts the pointer on a widget, as far as the widget can tell.
    static void enter(QWidget &widget)
    {
        QEnterEvent event({5, 5}, {5, 5}, {5, 5});
        QApplication::sendEvent(&widget, &event);
    }
    static void leave(QWidget &widget)
    {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(&widget, &event);
    }
    /// Lets all movement come to its end.
    void settle()
    {
        QCoreApplication::processEvents();
        clock.advance(std::chrono::seconds(3));
        QCoreApplication::processEvents();
        clock.advance(std::chrono::seconds(3));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

/// A tool that is only a place.
class PlainToolView : public ToolView
{
public:
    using ToolView::ToolView;
    std::optional<double> wantedBodyHeight() const override { return 226; }
};

/// The whole notch with its views on a started controller. A test gives it tools of its own where it needs them.
struct PanelFixture : ControlFixture
{
    ToolRegistry registry;
    FakeFeedSource updateServer;
    UpdateService updates{
        settings,
        clock,
        updateServer,
        {QUrl(QStringLiteral("https://feed.example/version.json")), QUrl(QStringLiteral("https://home.example/")), {}}};
    NotchPanel notch{controller, settings, registry, platform, clock, updates, context};

    PanelFixture()
    {
        for (const KestroModule module : kAllModules)
            registry.add(module, {.makeView = [](const ControlContext &, QWidget &parent) -> ToolView & {
                             return makeChild<PlainToolView>(&parent);
                         }});
    }
    /// Tools are registered before.
    void start()
    {
        controller.start(notch);
        settle();
    }
    void open(std::optional<KestroModule> module = std::nullopt)
    {
        controller.present(module, NotchController::Focus::Take, NotchController::Opening::Explicit);
        settle();
    }
    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget *target = notch.focusWidget() != nullptr ? notch.focusWidget() : &notch;
        QTest::keyClick(target, key, modifiers);
    }
    template <typename Widget>
    Widget &child(const QString &accessibleName = {}) const
    {
        for (Widget *widget : notch.findChildren<Widget *>()) {
            if (!widget->isHidden() && (accessibleName.isEmpty() || widget->accessibleName() == accessibleName))
                return *widget;
        }
        qFatal("no such widget: %s", qPrintable(accessibleName));
    }
};

} // namespace ostrelle
