#include "PanelFixture.h"
#include "notch/BackButton.h"
#include "notch/ModuleHeader.h"
#include "notch/ModuleStrip.h"
#include "notch/NotchRootView.h"
#include "notch/SettingsButton.h"
#include "notch/ToolView.h"
#include "notch/controls/EmptyStateView.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

/// A tool whose wishes the test sets.
class ProbeView : public ToolView
{
public:
    using ToolView::ToolView;
    std::optional<double> wantedBodyHeight() const override { return wanted; }
    void appeared() override { ++appearances; }
    QList<MenuEntry> menuEntries() override { return entries; }
    void undo() override { ++undone; }

    void paintEvent(QPaintEvent *) override
    {
        ++paints;
        QPainter(this).fillRect(rect(), color);
    }

    QList<MenuEntry> entries;
    QColor color = Qt::green;
    int paints = 0;
    std::optional<double> wanted = 300;
    int appearances = 0;
    int undone = 0;
};

struct ProbeFixture : PanelFixture
{
    QPointer<ProbeView> view;

    ProbeFixture()
    {
        Tool tool;
        tool.makeView = [this](const ControlContext &, QWidget &parent) -> ToolView & {
            view = &makeChild<ProbeView>(&parent);
            return *view;
        };
        registry.add(KestroModule::Clipboard, tool);
        start();
    }
};

} // namespace

class NotchPanelTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void oneStripServesEveryState();
    void clickOnTheClosedNotchOpensItWithTheKeyboard();
    void clickInTheCatchAreaBesideTheNotchOpensNothing();
    void pressInThePanelAsksForTheKeyboard();
    void digitsChooseOnTheSelectorOnly();
    void escapeGoesBackThenCloses();
    void undoReachesTheToolFromTheWholePanel();
    void heightFollowsTheTool();
    void aComingToolIsPaintedWhenItChanges();
    void leavingAToolFromItsOwnCodeIsSafe();
    void backLeavesTheTool();
    void saysWhenNoToolIsEnabled();
    void gearTellsOfAnUpdate();
    void menuOpensTheWindowsAndQuits();
    void menuBeginsWithWhatTheToolOffers();
    void isIdleWhenNothingMoves();
    void looksAfterMotionAsIfItHadNeverMoved();
    void forgetsTheTileThatAMenuLeftHovered();
    void contentStaysOnTheGrowingSurface();
    void reducedMotionFadesInPlace();
    void backdropIsKeptWhileOpenOnly();
    void tellsAssistiveTechnologyWhatItIs();
};

void NotchPanelTest::oneStripServesEveryState()
{
    PanelFixture fixture;
    fixture.start();
    const auto &tiles = fixture.child<ModuleStrip>().tiles();
    const std::vector<ModuleTile *> before = tiles;
    QCOMPARE(before.size(), std::size_t(6));
    fixture.open();
    QCOMPARE(tiles, before);
    QVERIFY(before.front()->isOpen());
    fixture.viewModel.select(KestroModule::Color);
    fixture.settle();
    QCOMPARE(tiles, before);
    fixture.settings.setEnabledModules({KestroModule::Color});
    fixture.settle();
    QCOMPARE(tiles.size(), std::size_t(1));
}

void NotchPanelTest::clickOnTheClosedNotchOpensItWithTheKeyboard()
{
    PanelFixture fixture;
    fixture.start();
    QTest::mouseClick(&fixture.notch, Qt::RightButton);
    QCOMPARE(fixture.viewModel.phase(), Phase::Idle);
    // On a mark, which is a child and lets the click through.
    QTest::mouseClick(fixture.child<ModuleStrip>().tiles().front(), Qt::LeftButton);
    fixture.settle();
    QCOMPARE(fixture.viewModel.phase(), Phase::Expanded);
    QVERIFY(fixture.platform.panelHost().hasKeyboard());
}

void NotchPanelTest::clickInTheCatchAreaBesideTheNotchOpensNothing()
{
    PanelFixture fixture;
    fixture.start();
    fixture.platform.dragSense().press();
    fixture.viewModel.setDragCatch(true);
    QTest::mouseClick(&fixture.notch, Qt::LeftButton, {}, {fixture.notch.width() / 2, 200});
    QCOMPARE(fixture.viewModel.phase(), Phase::Idle);
    QTest::mouseClick(&fixture.notch, Qt::LeftButton, {}, {fixture.notch.width() / 2, 10});
    QCOMPARE(fixture.viewModel.phase(), Phase::Expanded);
}

void NotchPanelTest::pressInThePanelAsksForTheKeyboard()
{
    PanelFixture fixture;
    fixture.start();
    fixture.controller.present(std::nullopt, NotchController::Focus::Leave, NotchController::Opening::Explicit);
    fixture.settle();
    QVERIFY(!fixture.platform.panelHost().hasKeyboard());
    QTest::mousePress(fixture.child<ModuleStrip>().tiles().front(), Qt::LeftButton);
    fixture.settle();
    QVERIFY(fixture.platform.panelHost().hasKeyboard());
}

void NotchPanelTest::digitsChooseOnTheSelectorOnly()
{
    PanelFixture fixture;
    fixture.settings.setEnabledModules({KestroModule::Clipboard, KestroModule::Color});
    fixture.start();
    fixture.open();
    fixture.pressKey(Qt::Key_3);
    fixture.pressKey(Qt::Key_0);
    QVERIFY(!fixture.viewModel.selection());
    fixture.pressKey(Qt::Key_2);
    fixture.settle();
    QCOMPARE(fixture.viewModel.selection(), KestroModule::Color);
    fixture.pressKey(Qt::Key_1);
    fixture.settle();
    QCOMPARE(fixture.viewModel.selection(), KestroModule::Color);
}

void NotchPanelTest::escapeGoesBackThenCloses()
{
    PanelFixture fixture;
    fixture.start();
    fixture.open(KestroModule::Color);
    fixture.pressKey(Qt::Key_Escape);
    fixture.settle();
    QVERIFY(!fixture.viewModel.selection());
    QCOMPARE(fixture.viewModel.phase(), Phase::Expanded);
    fixture.pressKey(Qt::Key_Escape);
    QCOMPARE(fixture.viewModel.phase(), Phase::Idle);
}

void NotchPanelTest::undoReachesTheToolFromTheWholePanel()
{
    ProbeFixture fixture;
    fixture.open(KestroModule::Clipboard);
    int expected = 0;
    for (QWidget *focused : {static_cast<QWidget *>(fixture.view), static_cast<QWidget *>(&fixture.child<BackButton>()),
                             static_cast<QWidget *>(fixture.child<ModuleStrip>().tiles().front())}) {
        focused->setFocus();
        fixture.pressKey(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(fixture.view->undone, ++expected);
    }
    fixture.pressKey(Qt::Key_Escape);
    fixture.settle();
    fixture.pressKey(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!fixture.viewModel.selection());
}

void NotchPanelTest::heightFollowsTheTool()
{
    ProbeFixture fixture;
    fixture.open(KestroModule::Clipboard);
    QCOMPARE(fixture.view->appearances, 1);
    QCOMPARE(fixture.notch.surfaceState().size, QSizeF(588, 300 + 24 + 18));
    QCOMPARE(fixture.view->height(), 300 - 106);
    fixture.view->wanted = 1000;
    Q_EMIT fixture.view->wantedBodyHeightChanged();
    fixture.settle();
    QCOMPARE(fixture.notch.surfaceState().size.height(), 402.0 + 24 + 18);
    fixture.view->wanted = std::nullopt;
    Q_EMIT fixture.view->wantedBodyHeightChanged();
    fixture.settle();
    QCOMPARE(fixture.notch.surfaceState().size.height(), 402.0 + 24 + 18);
    QCOMPARE(fixture.view->appearances, 1);
}

void NotchPanelTest::aComingToolIsPaintedWhenItChanges()
{
    ProbeFixture fixture;
    fixture.controller.present(KestroModule::Clipboard, NotchController::Focus::Take,
                               NotchController::Opening::Explicit);
    const auto middle = [&] {
        fixture.clock.advance(16ms);
        const QImage picture = fixture.notch.grab().toImage();
        return picture.pixelColor(picture.width() / 2, 160);
    };
    // Until it has come half way.
    while (middle().green() < 128)
        QVERIFY(fixture.frames.isRunning());
    const int paints = fixture.view->paints;
    middle();
    middle();
    QCOMPARE(fixture.view->paints, paints);
    fixture.view->color = Qt::blue;
    fixture.view->update();
    const QColor changed = middle();
    QVERIFY2(changed.blue() > 128 && changed.green() < 128, qPrintable(changed.name()));
    QVERIFY(fixture.frames.isRunning());
    QCOMPARE(fixture.view->paints, paints + 1);
}

void NotchPanelTest::leavingAToolFromItsOwnCodeIsSafe()
{
    ProbeFixture fixture;
    fixture.open(KestroModule::Clipboard);
    const QPointer<ProbeView> visit = fixture.view;
    Q_EMIT visit->dismissRequested();
    QVERIFY(visit);
    QCOMPARE(fixture.viewModel.phase(), Phase::Idle);
    fixture.settle();
    QVERIFY(!visit);
    // The next visit is a new one.
    fixture.open(KestroModule::Clipboard);
    QVERIFY(fixture.view);
    QCOMPARE(fixture.view->appearances, 1);
}

void NotchPanelTest::backLeavesTheTool()
{
    PanelFixture fixture;
    fixture.start();
    fixture.open(KestroModule::Projects);
    const int ticks = fixture.ticks();
    fixture.child<ModuleTile>(title(KestroModule::Projects)).click();
    QCOMPARE(fixture.ticks(), ticks);
    fixture.child<BackButton>().click();
    QVERIFY(!fixture.viewModel.selection());
}

void NotchPanelTest::saysWhenNoToolIsEnabled()
{
    PanelFixture fixture;
    fixture.settings.setEnabledModules({});
    fixture.start();
    fixture.open();
    QCOMPARE(fixture.child<EmptyStateView>().accessibleName(), QStringLiteral("No tools enabled"));
    fixture.pressKey(Qt::Key_1);
    QVERIFY(!fixture.viewModel.selection());
    fixture.settings.setEnabledModules({KestroModule::Color});
    fixture.settle();
    QVERIFY(fixture.notch.findChild<EmptyStateView *>()->isHidden());
}

void NotchPanelTest::gearTellsOfAnUpdate()
{
    PanelFixture fixture;
    fixture.start();
    fixture.open();
    auto &gear = fixture.child<SettingsButton>(QStringLiteral("Settings"));
    const auto hasDot = [&gear] {
        const QColor colour = gear.grab().toImage().pixelColor(17, 4);
        return colour.alpha() > 250 && qAbs(colour.redF() - Theme::kMagenta.redF()) < 0.02F;
    };
    const auto check = [&fixture](const QByteArray &feed) {
        fixture.updates.check(UpdateService::Check::Manual);
        fixture.updateServer.answer(feed);
    };
    QVERIFY(!hasDot());
    check("{\"version\": \"2\"}");
    QVERIFY(!hasDot()); // it grows
    fixture.settle();
    QVERIFY(hasDot());
    QCOMPARE(gear.toolTip(), QStringLiteral("Settings — an update is available"));
    QCOMPARE(gear.accessibleName(), gear.toolTip());
    fixture.updates.skip();
    fixture.settle();
    QVERIFY(!hasDot());
    QCOMPARE(gear.toolTip(), QStringLiteral("Settings"));

    // Out of sight nothing moves for it.
    fixture.controller.dismiss();
    fixture.settle();
    check("{\"version\": \"3\"}");
    QCOMPARE(fixture.clock.pendingCount(), 0);
    fixture.open();
    QVERIFY(hasDot());
}

void NotchPanelTest::menuOpensTheWindowsAndQuits()
{
    PanelFixture fixture;
    fixture.start();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {450, 10}, {450, 10});
    QApplication::sendEvent(&fixture.notch, &event);
    QMenu *menu = fixture.platform.popups().menu();
    QVERIFY(menu != nullptr);
    QCOMPARE(fixture.platform.popups().position(), QPointF(450, 10));
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QVERIFY(actions[0]->isEnabled() && actions[1]->isEnabled() && actions[2]->isSeparator());
    const QSignalSpy settings(&fixture.notch, &NotchPanel::settingsRequested);
    actions[0]->trigger();
    QTRY_COMPARE(settings.count(), 1);
    const QSignalSpy welcome(&fixture.notch, &NotchPanel::welcomeRequested);
    actions[1]->trigger();
    QTRY_COMPARE(welcome.count(), 1);
    QSignalSpy quit(&fixture.notch, &NotchPanel::quitRequested);
    actions[3]->trigger();
    QCOMPARE(quit.count(), 1);
}

void NotchPanelTest::menuBeginsWithWhatTheToolOffers()
{
    ProbeFixture fixture;
    fixture.open(KestroModule::Clipboard);
    int done = 0;
    fixture.view->entries = {{.text = QStringLiteral("Copy all"), .action = [&done] { ++done; }}};
    // In the header, which is not the tool's own.
    QContextMenuEvent event(QContextMenuEvent::Mouse, {450, 40}, {450, 40});
    QApplication::sendEvent(&fixture.child<ModuleHeader>(), &event);
    QList<QAction *> actions = fixture.platform.popups().menu()->actions();
    QCOMPARE(actions.size(), 6);
    QCOMPARE(actions[0]->text(), QStringLiteral("Copy all"));
    QVERIFY(actions[1]->isSeparator());
    actions[0]->trigger();
    QTRY_COMPARE(done, 1);
    // Without anything of the tool it begins with the panel's own, and no line.
    fixture.view->entries.clear();
    QApplication::sendEvent(&fixture.notch, &event);
    actions = fixture.platform.popups().menu()->actions();
    QCOMPARE(actions.size(), 4);
}

void NotchPanelTest::isIdleWhenNothingMoves()
{
    struct PaintCounter : QObject
    {
        int count = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } paints;
    PanelFixture fixture;
    fixture.start();
    for (const bool open : {false, true}) {
        if (open)
            fixture.open();
        QCoreApplication::processEvents();
        fixture.notch.installEventFilter(&paints);
        const int fired = fixture.clock.firedCount();
        paints.count = 0;
        fixture.clock.advance(60s);
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 0);
        QCOMPARE(fixture.clock.firedCount(), fired);
    }
}

void NotchPanelTest::looksAfterMotionAsIfItHadNeverMoved()
{
    PanelFixture travelled;
    travelled.start();
    travelled.open();
    travelled.viewModel.select(KestroModule::Color);
    travelled.clock.advance(70ms);
    travelled.viewModel.backToSelector();
    travelled.clock.advance(70ms);
    travelled.viewModel.select(KestroModule::AudioInfo);
    travelled.settle();
    PanelFixture direct;
    direct.start();
    direct.open(KestroModule::AudioInfo);
    QCOMPARE(travelled.notch.grab().toImage(), direct.notch.grab().toImage());

    travelled.controller.dismiss();
    direct.controller.dismiss();
    travelled.settle();
    PanelFixture fresh;
    fresh.start();
    QCOMPARE(travelled.notch.grab().toImage(), fresh.notch.grab().toImage());
    // What was open before leaves no trace on the selector.
    travelled.open();
    fresh.open();
    QCOMPARE(travelled.notch.grab().toImage(), fresh.notch.grab().toImage());
}

void NotchPanelTest::forgetsTheTileThatAMenuLeftHovered()
{
    PanelFixture fixture;
    fixture.start();
    auto &tile = *fixture.notch.findChild<ModuleTile *>();
    tile.setAttribute(Qt::WA_UnderMouse);
    ControlFixture::enter(tile);
    ControlFixture::leave(fixture.notch);
    QVERIFY(!tile.underMouse());
}

void NotchPanelTest::contentStaysOnTheGrowingSurface()
{
    PanelFixture fixture;
    fixture.start();
    const auto &root = fixture.child<NotchRootView>();
    const auto expectOnSurface = [&](QWidget &content) {
        int framesSeen = 0;
        for (int frame = 0; frame < 60; ++frame) {
            fixture.clock.advance(16ms);
            const double left = (root.width() - root.frame().width) / 2;
            if (content.isVisible()) {
                ++framesSeen;
                QVERIFY2(content.x() >= left - 1, qPrintable(QString::number(frame)));
            }
        }
        QVERIFY(framesSeen > 20);
    };
    fixture.controller.present(KestroModule::Color, NotchController::Focus::Leave, NotchController::Opening::Explicit);
    expectOnSurface(*root.findChild<ModuleHeader *>());
}

void NotchPanelTest::reducedMotionFadesInPlace()
{
    PanelFixture fixture;
    fixture.platform.appearance().setPrefersReducedMotion(true);
    fixture.start();
    const QImage closed = fixture.notch.grab().toImage();
    fixture.controller.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
    QCoreApplication::processEvents();
    QCOMPARE(fixture.notch.surfaceState().size, QSizeF(588, 112 + 24 + 18));
    // The first picture is the old one, in place.
    const QImage first = fixture.notch.grab().toImage();
    const int shift = (first.width() - closed.width()) / 2;
    QCOMPARE(first.copy(shift, 0, closed.width(), 24), closed.copy(0, 0, closed.width(), 24));
    fixture.clock.advance(80ms);
    const QPoint onGlass(first.width() / 2 - 250, 100);
    const int half = fixture.notch.grab().toImage().pixelColor(onGlass).alpha();
    QVERIFY(half > 60 && half < 220);
    fixture.settle();
    QCOMPARE(fixture.notch.grab().toImage().pixelColor(onGlass).alpha(), 255);
    QVERIFY(!fixture.frames.isRunning());
}

void NotchPanelTest::backdropIsKeptWhileOpenOnly()
{
    PanelFixture fixture;
    fixture.platform.panelHost().setBackdrop(QColor(0, 120, 255));
    fixture.start();
    fixture.open();
    QVERIFY(!fixture.notch.surfaceState().backdrop.isNull());
    fixture.controller.dismiss();
    fixture.settle();
    QVERIFY(fixture.notch.surfaceState().backdrop.isNull());
    // A compositor that blurs by itself gets the outline instead.
    fixture.platform.panelHost().setGlass(PanelHost::Glass::Compositor);
    const int captures = fixture.platform.panelHost().captureCount();
    fixture.open();
    QCOMPARE(fixture.platform.panelHost().captureCount(), captures);
    const QRectF outline = fixture.platform.panelHost().outline().boundingRect();
    QCOMPARE(outline.width(), 588 + 2 * 12.0);
    QCOMPARE(outline.center().x(), fixture.notch.width() / 2.0);
}

void NotchPanelTest::tellsAssistiveTechnologyWhatItIs()
{
    PanelFixture fixture;
    fixture.start();
    fixture.open();
    QAccessibleInterface *panel = QAccessible::queryAccessibleInterface(&fixture.notch);
    QCOMPARE(panel->role(), QAccessible::Dialog);
    QCOMPARE(panel->text(QAccessible::Name), QStringLiteral("Ostrelle"));
    const auto &tile = fixture.child<ModuleTile>(QStringLiteral("Image Info"));
    QAccessibleInterface *button = QAccessible::queryAccessibleInterface(&const_cast<ModuleTile &>(tile));
    QCOMPARE(button->role(), QAccessible::Button);
    QCOMPARE(button->text(QAccessible::Description), blurb(KestroModule::ImageInfo));
    QVERIFY(button->state().focusable);
    QVERIFY(!button->state().checked);
    QVERIFY(button->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    fixture.open(KestroModule::ImageInfo);
    QVERIFY(button->state().checked);
}

OSTRELLE_TEST(NotchPanelTest)
#include "NotchPanelTest.moc"
