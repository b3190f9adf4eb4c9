#include "NotchFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <limits>
#include <tuple>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

const QList<KestroModule> kTargets = {KestroModule::Assets, KestroModule::ImageInfo};

} // namespace

class NotchViewModelTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void hoveringOpensAfterTheDelay();
    void leavingEarlyOpensNothing();
    void hoveringNeverOpensWithoutADelay_data();
    void hoveringNeverOpensWithoutADelay();
    void whateverOpensEndsTheHoverDelay();
    void leavingClosesOnlyWhatHoveringOpened();
    void aToolStartsAtTheHeightThatIsShown();
    void selectingTheOpenToolStillTicksAndTakesTheShownHeight();
    void closingForgetsTheVisitButNotTheDrag();
    void ticksOnlyWhereSomethingOpensAndTheUserWantsIt();
    void anArmedCatchKeepsHoveringAway();
    void theCatchEndsTwoLooksAfterTheRelease();
    void theCatchEndsByTimeWhereButtonsAreUnseen();
    void zonesOutlastDisarming();
    void routingToNothingNewChangesNothing();
    void theHoveredZoneFollowsThePoint();
    void routingEndsSoonAfterTheDragLeft_data();
    void routingEndsSoonAfterTheDragLeft();
    void endedRoutingMayStayOpen();
    void observersSeeWholeStatesWithTheirMotion();
    void nothingIsAnnouncedWithoutAChange();
    void geometryFollowsTheSettings();
    void openingIsAnnouncedBeforeItHappens();
};

void NotchViewModelTest::hoveringOpensAfterTheDelay()
{
    NotchFixture notch;
    QSignalSpy due(&notch.viewModel, &NotchViewModel::hoverOpenDue);
    notch.viewModel.pointerEntered();
    QCOMPARE(notch.viewModel.phase(), Phase::Hover);
    notch.clock.advance(999ms);
    QCOMPARE(due.size(), 0);
    notch.clock.advance(1ms);
    QCOMPARE(due.size(), 1);
    QCOMPARE(notch.viewModel.phase(), Phase::Hover);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchViewModelTest::leavingEarlyOpensNothing()
{
    NotchFixture notch;
    QSignalSpy due(&notch.viewModel, &NotchViewModel::hoverOpenDue);
    notch.viewModel.pointerEntered();
    notch.clock.advance(900ms);
    notch.viewModel.pointerExited();
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    QCOMPARE(notch.clock.pendingCount(), 0);

    // Coming back starts the delay anew.
    notch.viewModel.pointerEntered();
    notch.clock.advance(900ms);
    QCOMPARE(due.size(), 0);
}

void NotchViewModelTest::hoveringNeverOpensWithoutADelay_data()
{
    QTest::addColumn<double>("delay");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("longer than a clock can wait") << std::numeric_limits<double>::max();
}

void NotchViewModelTest::hoveringNeverOpensWithoutADelay()
{
    QFETCH(const double, delay);
    NotchFixture notch;
    notch.settings.setHoverOpenDelay(delay);
    QSignalSpy due(&notch.viewModel, &NotchViewModel::hoverOpenDue);
    notch.viewModel.pointerEntered();
    notch.clock.advance(60s);
    QCOMPARE(notch.viewModel.phase(), Phase::Hover);
    QCOMPARE(due.size(), 0);
}

void NotchViewModelTest::whateverOpensEndsTheHoverDelay()
{
    NotchFixture notch;
    QSignalSpy due(&notch.viewModel, &NotchViewModel::hoverOpenDue);
    notch.viewModel.pointerEntered();
    notch.viewModel.expand(std::nullopt, false);
    QCOMPARE(notch.clock.pendingCount(), 0);
    notch.viewModel.collapse();
    notch.viewModel.pointerEntered();
    notch.viewModel.beginRouting(kTargets);
    QCOMPARE(notch.clock.pendingCount(), 0);
    notch.viewModel.endRouting(false);
    notch.viewModel.pointerEntered();
    notch.viewModel.collapse();
    QCOMPARE(notch.clock.pendingCount(), 0);
    QCOMPARE(due.size(), 0);
}

void NotchViewModelTest::leavingClosesOnlyWhatHoveringOpened()
{
    NotchFixture notch;
    QSignalSpy watch(&notch.viewModel, &NotchViewModel::hoverDismissWatchDue);
    notch.viewModel.expand(std::nullopt, false);
    notch.viewModel.pointerExited();
    QCOMPARE(watch.size(), 0);
    notch.viewModel.expand(std::nullopt, true);
    notch.viewModel.pointerExited();
    QCOMPARE(watch.size(), 1);
    notch.viewModel.keepOpen();
    notch.viewModel.pointerExited();
    QCOMPARE(watch.size(), 1);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
}

void NotchViewModelTest::aToolStartsAtTheHeightThatIsShown()
{
    NotchFixture notch;
    notch.viewModel.expand(KestroModule::Clipboard, false);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::nullopt);
    notch.viewModel.setRequestedContentHeight(1000);
    notch.viewModel.expand(KestroModule::Color, false);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::optional(402.0));
    notch.viewModel.expand(std::nullopt, false);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::optional(402.0));
    QCOMPARE(notch.viewModel.selection(), std::nullopt);
    notch.viewModel.select(KestroModule::Assets);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::optional(112.0));
    QCOMPARE(notch.viewModel.geometry().contentSize, QSizeF(588, 150 + 24 + 18));
}

void NotchViewModelTest::selectingTheOpenToolStillTicksAndTakesTheShownHeight()
{
    NotchFixture notch;
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.viewModel.setRequestedContentHeight(900);
    const int before = notch.ticks();
    notch.viewModel.select(KestroModule::Assets);
    QCOMPARE(notch.ticks(), before + 1);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::optional(374.0));

    // Selecting in the closed notch opens nothing, and no height is below zero.
    notch.viewModel.collapse();
    notch.viewModel.select(KestroModule::Color);
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::optional(0.0));
}

void NotchViewModelTest::closingForgetsTheVisitButNotTheDrag()
{
    NotchFixture notch;
    const QMap<KestroModule, QRectF> frames{{KestroModule::Assets, QRectF(0, 0, 10, 10)}};
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.viewModel.expand(KestroModule::Assets, true);
    notch.viewModel.setRequestedContentHeight(200);
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.setDropZoneFrames(frames);
    notch.viewModel.updateRouting({5, 5});
    notch.viewModel.collapse();

    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    QCOMPARE(notch.viewModel.selection(), std::nullopt);
    QCOMPARE(notch.viewModel.requestedContentHeight(), std::nullopt);
    QCOMPARE(notch.viewModel.hoveredDropZone(), std::nullopt);
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QVERIFY(!notch.viewModel.openedByHover());
    QVERIFY(notch.viewModel.isDragCatchArmed());
    QCOMPARE(notch.viewModel.dropZoneFrames(), frames);
}

void NotchViewModelTest::ticksOnlyWhereSomethingOpensAndTheUserWantsIt()
{
    NotchFixture notch;
    notch.viewModel.pointerEntered();
    QCOMPARE(notch.ticks(), 0);
    notch.viewModel.expand(std::nullopt, true);
    QCOMPARE(notch.ticks(), 1);
    notch.viewModel.expand(KestroModule::Color, false);
    notch.viewModel.backToSelector();
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.collapse();
    QCOMPARE(notch.ticks(), 1);
    notch.viewModel.beginRouting(kTargets);
    QCOMPARE(notch.ticks(), 2);

    notch.settings.setHapticFeedback(false);
    notch.viewModel.collapse();
    notch.viewModel.expand(std::nullopt, false);
    notch.viewModel.select(KestroModule::Color);
    QCOMPARE(notch.ticks(), 2);
}

void NotchViewModelTest::anArmedCatchKeepsHoveringAway()
{
    NotchFixture notch;
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.viewModel.pointerEntered();
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    QCOMPARE(notch.viewModel.geometry().contentSize, QSizeF(192 + 44, 24 + 14));
}

void NotchViewModelTest::theCatchEndsTwoLooksAfterTheRelease()
{
    NotchFixture notch;
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.clock.advance(1s);
    QVERIFY(notch.viewModel.isDragCatchArmed());

    // Up for one look only is not the end.
    notch.platform.dragSense().release();
    notch.clock.advance(100ms);
    notch.platform.dragSense().press();
    notch.clock.advance(100ms);
    notch.platform.dragSense().release();
    notch.clock.advance(100ms);
    QVERIFY(notch.viewModel.isDragCatchArmed());
    notch.clock.advance(100ms);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchViewModelTest::theCatchEndsByTimeWhereButtonsAreUnseen()
{
    NotchFixture notch;
    notch.platform.dragSense().forgetButton();
    notch.viewModel.setDragCatch(true);
    notch.clock.advance(29900ms);
    QVERIFY(notch.viewModel.isDragCatchArmed());
    notch.clock.advance(100ms);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
}

void NotchViewModelTest::zonesOutlastDisarming()
{
    NotchFixture notch;
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.setDragCatch(false);
    QVERIFY(notch.viewModel.isDragCatchArmed());

    notch.platform.dragSense().release();
    notch.clock.advance(200ms);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchViewModelTest::routingToNothingNewChangesNothing()
{
    NotchFixture notch;
    notch.viewModel.beginRouting({});
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    notch.viewModel.beginRouting(kTargets);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    int changes = 0;
    const auto observer = notch.viewModel.bindableDropTargets().addNotifier([&changes] { ++changes; });
    notch.viewModel.beginRouting(kTargets);
    QCOMPARE(notch.ticks(), 1);
    QCOMPARE(changes, 0);
    notch.viewModel.beginRouting({kTargets.crbegin(), kTargets.crend()});
    QCOMPARE(notch.ticks(), 1);
    QCOMPARE(changes, 1);
}

void NotchViewModelTest::theHoveredZoneFollowsThePoint()
{
    NotchFixture notch;
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.setDropZoneFrames(
        {{KestroModule::Assets, QRectF(0, 0, 100, 50)}, {KestroModule::ImageInfo, QRectF(110, 0, 100, 50)}});
    QList<SurfaceMotion> motions;
    const auto observer =
        notch.viewModel.bindableHoveredDropZone().addNotifier([&] { motions.append(notch.viewModel.motion()); });
    const int before = notch.ticks();

    notch.viewModel.updateRouting({105, 20});
    QCOMPARE(notch.viewModel.hoveredDropZone(), std::nullopt);
    notch.viewModel.updateRouting({10, 20});
    notch.viewModel.updateRouting({20, 20});
    QCOMPARE(notch.viewModel.hoveredDropZone(), std::optional(KestroModule::Assets));
    QCOMPARE(notch.ticks(), before + 1);
    notch.viewModel.updateRouting({120, 20});
    QCOMPARE(notch.viewModel.hoveredDropZone(), std::optional(KestroModule::ImageInfo));
    QCOMPARE(notch.ticks(), before + 2);
    notch.viewModel.updateRouting({300, 20});
    QCOMPARE(notch.viewModel.hoveredDropZone(), std::nullopt);
    QCOMPARE(notch.ticks(), before + 2);
    QCOMPARE(motions, QList<SurfaceMotion>(3, SurfaceMotion::Zone));
}

void NotchViewModelTest::routingEndsSoonAfterTheDragLeft_data()
{
    QTest::addColumn<QString>("comesBackBy");
    QTest::newRow("stays away") << QString();
    QTest::newRow("enters again") << QStringLiteral("begin");
    QTest::newRow("moves again") << QStringLiteral("update");
}

void NotchViewModelTest::routingEndsSoonAfterTheDragLeft()
{
    QFETCH(const QString, comesBackBy);
    NotchFixture notch;
    notch.viewModel.scheduleRoutingEnd();
    QCOMPARE(notch.clock.pendingCount(), 0);
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.setDropZoneFrames({{KestroModule::Assets, QRectF(0, 0, 10, 10)}});
    notch.viewModel.scheduleRoutingEnd();
    notch.clock.advance(169ms);
    QCOMPARE(notch.viewModel.dropTargets(), kTargets);
    if (comesBackBy == u"begin")
        notch.viewModel.beginRouting(kTargets);
    else if (comesBackBy == u"update")
        notch.viewModel.updateRouting({5, 5});
    notch.clock.advance(1s);
    const bool isOver = comesBackBy.isEmpty();
    QCOMPARE(notch.viewModel.dropTargets().isEmpty(), isOver);
    QCOMPARE(notch.viewModel.dropZoneFrames().isEmpty(), isOver);
    QCOMPARE(notch.viewModel.phase(), isOver ? Phase::Idle : Phase::Expanded);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchViewModelTest::endedRoutingMayStayOpen()
{
    NotchFixture notch;
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.endRouting(true);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    // Without zones there is nothing to end.
    notch.viewModel.endRouting(false);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
}

void NotchViewModelTest::observersSeeWholeStatesWithTheirMotion()
{
    NotchFixture notch;
    NotchViewModel &model = notch.viewModel;
    using State = std::tuple<Phase, std::optional<KestroModule>, QList<KestroModule>, NotchMetrics, NotchGeometry>;
    const auto state = [&model] {
        return State(model.phase(), model.selection(), model.dropTargets(), model.metrics(), model.geometry());
    };
    QList<SurfaceMotion> motions;
    QList<State> states;
    const auto look = [&] {
        motions.append(model.motion());
        states.append(state());
    };
    const auto phase = model.bindablePhase().addNotifier(look);
    const auto selection = model.bindableSelection().addNotifier(look);
    const auto targets = model.bindableDropTargets().addNotifier(look);
    const auto metrics = model.bindableMetrics().addNotifier(look);
    const auto geometry = model.bindableGeometry().addNotifier(look);

    const auto expectMotion = [&](SurfaceMotion motion) {
        const bool isRight =
            !motions.isEmpty() && motions.count(motion) == motions.size() && states.count(state()) == states.size();
        motions.clear();
        states.clear();
        return isRight;
    };
    model.pointerEntered();
    QVERIFY(expectMotion(SurfaceMotion::Hover));
    model.expand(KestroModule::Clipboard, true);
    QVERIFY(expectMotion(SurfaceMotion::Surface));
    model.setRequestedContentHeight(300);
    QVERIFY(expectMotion(SurfaceMotion::Surface));
    model.beginRouting(kTargets);
    QVERIFY(expectMotion(SurfaceMotion::Surface));
    model.expand(KestroModule::Assets, false);
    QVERIFY(expectMotion(SurfaceMotion::Surface));
    model.setMetrics({.menuBarHeight = 30}, SurfaceMotion::Zone);
    QVERIFY(expectMotion(SurfaceMotion::Zone));
    model.collapse();
    QVERIFY(expectMotion(SurfaceMotion::Surface));
    model.setMetrics({.menuBarHeight = 24}, SurfaceMotion::None);
    QVERIFY(expectMotion(SurfaceMotion::None));
    QCOMPARE(model.geometry(), NotchGeometry::compute({}));
}

void NotchViewModelTest::nothingIsAnnouncedWithoutAChange()
{
    NotchFixture notch;
    NotchViewModel &model = notch.viewModel;
    model.expand(KestroModule::Color, false);
    model.setRequestedContentHeight(200);
    int changes = 0;
    const auto count = [&changes] { ++changes; };
    const auto phase = model.bindablePhase().addNotifier(count);
    const auto selection = model.bindableSelection().addNotifier(count);
    const auto targets = model.bindableDropTargets().addNotifier(count);
    const auto zone = model.bindableHoveredDropZone().addNotifier(count);
    const auto metrics = model.bindableMetrics().addNotifier(count);
    const auto geometry = model.bindableGeometry().addNotifier(count);

    model.expand(KestroModule::Color, true);
    model.select(KestroModule::Color);
    model.setRequestedContentHeight(200);
    model.setMetrics(model.metrics(), SurfaceMotion::Zone);
    model.pointerEntered();
    model.endRouting(false);
    model.setDragCatch(false);
    model.updateRouting({1, 1});
    QCOMPARE(changes, 0);
}

void NotchViewModelTest::geometryFollowsTheSettings()
{
    NotchFixture notch;
    QList<SurfaceMotion> motions;
    const auto observer =
        notch.viewModel.bindableGeometry().addNotifier([&] { motions.append(notch.viewModel.motion()); });
    notch.viewModel.pointerEntered();
    notch.viewModel.pointerExited();
    motions.clear();

    notch.settings.setEnabledModules({KestroModule::Clipboard, KestroModule::Color});
    QCOMPARE(notch.viewModel.geometry().contentSize, QSizeF(2 * 22 + 6 + 30, 24));
    notch.settings.setShowAutomatically(false);
    QCOMPARE(notch.viewModel.geometry().contentSize, QSizeF(0, 0));
    QCOMPARE(motions, QList<SurfaceMotion>(2, SurfaceMotion::Surface));
}

void NotchViewModelTest::openingIsAnnouncedBeforeItHappens()
{
    NotchFixture notch;
    QList<Phase> phases;
    connect(&notch.viewModel, &NotchViewModel::aboutToOpen, this, [&] { phases.append(notch.viewModel.phase()); });
    notch.viewModel.pointerEntered();
    notch.viewModel.expand(std::nullopt, true);
    notch.viewModel.expand(KestroModule::Color, false);
    notch.viewModel.beginRouting(kTargets);
    notch.viewModel.collapse();
    notch.viewModel.beginRouting(kTargets);
    QCOMPARE(phases, (QList<Phase>{Phase::Idle, Phase::Hover, Phase::Idle}));
}

OSTRELLE_TEST(NotchViewModelTest)
#include "NotchViewModelTest.moc"
