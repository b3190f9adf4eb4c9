#include "PanelFixture.h"
#include "notch/controls/AnimatedNumber.h"
#include "records/Motion.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

using namespace ostrelle;
using namespace std::chrono_literals;

class FrameClockTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void hasNoTimerWhileNothingMoves();
    void followsTheScreensRate();
    void clientsMayComeAndGoDuringAFrame();
    void fadesOutWhereMovementIsReduced();
};

void FrameClockTest::hasNoTimerWhileNothingMoves()
{
    ControlFixture fixture;
    AnimatedNumber number(fixture.context, 0, [] {});
    QCOMPARE(fixture.clock.pendingCount(), 0);
    number.animateTo(1, Motion::hover());
    QVERIFY(fixture.frames.isRunning());
    fixture.clock.advance(3s);
    QCOMPARE(number.value(), 1.0);
    QCOMPARE(fixture.clock.pendingCount(), 0);
}

void FrameClockTest::followsTheScreensRate()
{
    ControlFixture fixture;
    int steps = 0;
    AnimatedNumber number(fixture.context, 0, [&] { ++steps; });
    fixture.frames.setRefreshRate(100);
    number.fadeTo(1, 10s);
    fixture.clock.advance(1s);
    QCOMPARE(steps, 100);
    fixture.frames.setRefreshRate(50);
    fixture.clock.advance(1s);
    QCOMPARE(steps, 150);
    // What no screen has is taken for a mistake of the desktop.
    fixture.frames.setRefreshRate(0);
    fixture.clock.advance(1s);
    QCOMPARE(steps, 210);
}

void FrameClockTest::clientsMayComeAndGoDuringAFrame()
{
    ControlFixture fixture;
    std::unique_ptr<AnimatedNumber> doomed;
    std::unique_ptr<AnimatedNumber> born;
    int doomedSteps = 0;
    AnimatedNumber first(fixture.context, 0, [&] {
        doomed.reset();
        if (!born) {
            born = std::make_unique<AnimatedNumber>(fixture.context, 0, [] {});
            born->fadeTo(1, 50ms);
        }
    });
    first.fadeTo(1, 100ms);
    doomed = std::make_unique<AnimatedNumber>(fixture.context, 0, [&] { ++doomedSteps; });
    doomed->fadeTo(1, 100ms);
    fixture.clock.advance(1s);
    QCOMPARE(doomedSteps, 0);
    QVERIFY(born);
    QCOMPARE(born->value(), 1.0);
    QVERIFY(!fixture.frames.isRunning());
}

void FrameClockTest::fadesOutWhereMovementIsReduced()
{
    ControlFixture fixture;
    fixture.platform.appearance().setPrefersReducedMotion(true);
    AnimatedNumber number(fixture.context, 0, [] {});
    number.animateTo(1, Motion::surface());
    fixture.clock.advance(80ms);
    QVERIFY(number.value() > 0.55 && number.value() < 0.75);
    fixture.clock.advance(100ms);
    QCOMPARE(number.value(), 1.0);
    QVERIFY(!fixture.frames.isRunning());
}

OSTRELLE_TEST(FrameClockTest)
#include "FrameClockTest.moc"
