#include "NotchFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

using Focus = NotchController::Focus;
using Opening = NotchController::Opening;

const Screen kLeft = FakeScreens::make(QStringLiteral("left"), QRectF(0, 0, 1920, 1080));
const Screen kRight = FakeScreens::make(QStringLiteral("right"), QRectF(1920, 0, 1280, 1024));

/// A started controller on kLeft, and what a user does to it.
struct RunningNotch : NotchFixture
{
    explicit RunningNotch(const QList<Screen> &screens = {kLeft})
    {
        platform.screens().arrange(screens);
        platform.pointerNear().moveToScreen(kLeft.name);
        controller.start(panel);
    }

    FakePanelHost &host() { return platform.panelHost(); }
    void openByHover() { controller.present(std::nullopt, Focus::Leave, Opening::ByHover); }
    void openByClick() { controller.present(std::nullopt, Focus::Take, Opening::Explicit); }
    void pointAway() { platform.pointerNear().moveTo({5, 600}); }
    void pointInside() { platform.pointerNear().moveTo({panel.width() / 2.0, 60}); }
    /// A press in another program, with or without something being dragged after it.
    void pressOutside()
    {
        platform.dragSense().press();
        platform.outsideActivity().press();
    }
};

/// Lets the answers of the panel host arrive.
void deliverAnswers()
{
    QCoreApplication::processEvents();
}

} // namespace

class NotchControllerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void startsOnTheScreenUnderThePointer();
    void acceptsThePointerOnTheSurfaceOnly();
    void growsAtOnceAndShrinksLate();
    void keepsTheWindowWhileADragIsCaught();
    void takesDragsInTheWholeCatchArea_data();
    void takesDragsInTheWholeCatchArea();
    void isNeverLargerThanTheScreen();
    void hoveringOpensAndLeavingCloses();
    void aPointerThatComesBackOrIsUnknownKeepsItOpen();
    void theKeyboardKeepsItOpen();
    void suppressionHoldsBackWhatClosesByItself();
    void suppressingAgainOutlivesAnEarlierRelease();
    void closesForOthersAndGivesTheKeyboardBack_data();
    void closesForOthersAndGivesTheKeyboardBack();
    void aPressOnACandidateOfTheInputMethodKeepsItOpen();
    void returnsAKeyboardGrantedTooLate();
    void takesTheKeyboardOnlyWhereAsked();
    void escapeGoesBackThenCloses();
    void catchesADragThatBeganElsewhere();
    void ignoresPressesThatDragNothing_data();
    void ignoresPressesThatDragNothing();
    void followsThePointerOnlyWhileIdle();
    void opensWhereThePointerIs();
    void staysOnItsScreenWhileItExists();
    void waitsForAScreen();
    void takesADeclaredNotchLive();
    void sleepsWhileNothingHappens();
};

void NotchControllerTest::startsOnTheScreenUnderThePointer()
{
    NotchFixture notch;
    Screen right = kRight;
    right.topBarHeight = 32;
    notch.platform.screens().arrange({kLeft, right});
    notch.platform.pointerNear().moveToScreen(right.name);
    notch.controller.start(notch.panel);
    QCOMPARE(notch.platform.panelHost().screenName(), right.name);
    QCOMPARE(notch.platform.panelHost().placeCount(), 1);
    QCOMPARE(notch.controller.currentScreen(), std::optional(right));
    QCOMPARE(notch.viewModel.metrics().menuBarHeight, 32.0);
    QCOMPARE(notch.controller.windowSize(), QSizeF(192 + 14 + 92, 32 + 5 + 46));
    QCOMPARE(notch.platform.panelHost().size(), notch.controller.windowSize());

    NotchFixture blind;
    blind.platform.screens().arrange({kRight, kLeft});
    blind.controller.start(blind.panel);
    QCOMPARE(blind.platform.panelHost().screenName(), kRight.name);
}

void NotchControllerTest::acceptsThePointerOnTheSurfaceOnly()
{
    RunningNotch notch;
    const auto isCentred = [&notch](const QSizeF &size) {
        return notch.host().interactiveRect() == QRectF(QPointF((notch.panel.width() - size.width()) / 2, 0), size);
    };
    QVERIFY(isCentred({206, 29}));
    notch.settings.setRaw(QStringLiteral("general.hoverOpenDelay"), 0.5);
    notch.settings.setRaw(QStringLiteral("general.showAutomatically"), false);
    QVERIFY(notch.host().interactiveRect().isEmpty());
    notch.settings.setRaw(QStringLiteral("general.showAutomatically"), true);
    QVERIFY(isCentred({206, 29}));
    notch.openByClick();
    QVERIFY(isCentred({588, 154}));
    notch.viewModel.select(KestroModule::Clipboard);
    notch.viewModel.setRequestedContentHeight(300);
    QVERIFY(isCentred({588, 342}));
    notch.controller.dismiss();
    QVERIFY(isCentred({206, 29}));
    notch.settings.setRaw(QStringLiteral("general.showAutomatically"), false);
    QVERIFY(notch.host().interactiveRect().isEmpty());
}

void NotchControllerTest::growsAtOnceAndShrinksLate()
{
    RunningNotch notch;
    notch.openByClick();
    QCOMPARE(notch.controller.windowSize(), QSizeF(680, 200));
    QCOMPARE(notch.host().size(), QSizeF(680, 200));

    notch.controller.dismiss();
    notch.clock.advance(519ms);
    QCOMPARE(notch.controller.windowSize(), QSizeF(680, 200));
    notch.openByClick();
    notch.clock.advance(10s);
    QCOMPARE(notch.controller.windowSize(), QSizeF(680, 200));

    // Every further wish for less starts the wait anew.
    notch.controller.dismiss();
    notch.clock.advance(300ms);
    notch.settings.setEnabledModules({KestroModule::Color});
    notch.clock.advance(519ms);
    QCOMPARE(notch.host().size(), QSizeF(680, 200));
    notch.clock.advance(1ms);
    QCOMPARE(notch.host().size(), QSizeF(52 + 14 + 92, 75));
}

void NotchControllerTest::keepsTheWindowWhileADragIsCaught()
{
    RunningNotch notch;
    notch.openByClick();
    notch.viewModel.select(KestroModule::AudioInfo);
    notch.viewModel.setRequestedContentHeight(490);
    const QSizeF open = notch.controller.windowSize();
    notch.controller.dismiss();
    notch.clock.advance(300ms);
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.clock.advance(5s);
    QCOMPARE(notch.controller.windowSize(), open);
    notch.platform.dragSense().release();
    notch.clock.advance(200ms + 520ms);
    QCOMPARE(notch.controller.windowSize(), QSizeF(298, 75));
}

void NotchControllerTest::takesDragsInTheWholeCatchArea_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::newRow("closed notch") << true;
    QTest::newRow("hidden notch") << false;
}

void NotchControllerTest::takesDragsInTheWholeCatchArea()
{
    QFETCH(const bool, isShown);
    RunningNotch notch;
    notch.settings.setShowAutomatically(isShown);
    const QRectF before = notch.platform.panelHost().interactiveRect();
    QCOMPARE(before.isEmpty(), !isShown);
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    const double left = (notch.panel.width() - 560) / 2.0;
    QCOMPARE(notch.platform.panelHost().interactiveRect(), QRectF(left, 0, 560, 380));
    // Landing zones are smaller than the catch area, which lasts with them.
    notch.viewModel.beginRouting({KestroModule::Assets});
    QCOMPARE(notch.platform.panelHost().interactiveRect(), QRectF(left, 0, 560, 380));
    notch.platform.dragSense().release();
    notch.clock.advance(200ms);
    QCOMPARE(notch.platform.panelHost().interactiveRect(), before);
}

void NotchControllerTest::isNeverLargerThanTheScreen()
{
    RunningNotch notch({FakeScreens::make(kLeft.name, QRectF(0, 0, 640, 320))});
    notch.controller.present(KestroModule::Clipboard, Focus::Take, Opening::Explicit);
    notch.viewModel.setRequestedContentHeight(400);
    QCOMPARE(notch.controller.windowSize(), QSizeF(640, 320));
    QVERIFY(QRectF(notch.panel.rect()).contains(notch.host().interactiveRect()));
}

void NotchControllerTest::hoveringOpensAndLeavingCloses()
{
    RunningNotch notch;
    notch.pointInside();
    notch.viewModel.pointerEntered();
    notch.clock.advance(1s);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QVERIFY(notch.viewModel.openedByHover());
    QVERIFY(notch.host().lastToken().isNull());
    notch.clock.advance(1min);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);

    // Looks every 0.12 s from here; the first one outside counts, more than 0.42 s later it is over.
    notch.viewModel.pointerExited();
    notch.pointAway();
    notch.clock.advance(120ms + 479ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    notch.clock.advance(1ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    notch.clock.advance(520ms);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchControllerTest::aPointerThatComesBackOrIsUnknownKeepsItOpen()
{
    RunningNotch notch;
    notch.openByHover();
    const QRectF surface = notch.host().interactiveRect();
    for (int i = 0; i < 10; ++i) {
        notch.pointAway();
        notch.clock.advance(480ms);
        notch.platform.pointerNear().moveTo(surface.bottomLeft() + QPointF(-9, 9));
        notch.clock.advance(120ms);
    }
    notch.platform.pointerNear().forget();
    notch.clock.advance(10s);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    notch.platform.pointerNear().moveTo(surface.bottomLeft() + QPointF(-11, 0));
    notch.clock.advance(600ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchControllerTest::theKeyboardKeepsItOpen()
{
    RunningNotch notch;
    notch.openByHover();
    notch.host().takeKeyboard({});
    deliverAnswers();
    notch.pointAway();
    notch.clock.advance(10s);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QVERIFY(!notch.viewModel.openedByHover());
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchControllerTest::suppressionHoldsBackWhatClosesByItself()
{
    RunningNotch notch;
    notch.openByHover();
    notch.pointAway();
    notch.clock.advance(480ms);
    notch.controller.suppressAutoCollapse();
    notch.platform.outsideActivity().press();
    notch.platform.outsideActivity().activate(QStringLiteral("editor"));
    notch.clock.advance(10s);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QVERIFY(notch.platform.panelHost().isGivingWay());

    // The time outside counts from the release.
    notch.controller.releaseAutoCollapse(400ms);
    QVERIFY(!notch.platform.panelHost().isGivingWay());
    notch.clock.advance(400ms + 480ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    notch.clock.advance(120ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);

    notch.openByClick();
    notch.controller.suppressAutoCollapse();
    notch.controller.releaseAutoCollapse(0ns);
    notch.platform.outsideActivity().press();
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchControllerTest::suppressingAgainOutlivesAnEarlierRelease()
{
    RunningNotch notch;
    notch.openByClick();
    notch.controller.suppressAutoCollapse();
    notch.controller.releaseAutoCollapse(400ms);
    notch.clock.advance(200ms);
    notch.controller.suppressAutoCollapse();
    notch.clock.advance(10s);
    notch.platform.outsideActivity().press();
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
}

void NotchControllerTest::closesForOthersAndGivesTheKeyboardBack_data()
{
    QTest::addColumn<QString>("cause");
    for (const char *cause : {"press", "application", "dismiss", "drag left"})
        QTest::newRow(cause) << QString::fromLatin1(cause);
}

void NotchControllerTest::closesForOthersAndGivesTheKeyboardBack()
{
    QFETCH(const QString, cause);
    RunningNotch notch;
    notch.openByClick();
    deliverAnswers();
    QVERIFY(notch.host().hasKeyboard());
    if (cause == u"press") {
        notch.platform.outsideActivity().press();
        QVERIFY(notch.host().hasKeyboard()); // the window manager gives it to what was pressed, if it wants it
        notch.clock.advance(150ms);
    } else if (cause == u"application") {
        notch.platform.outsideActivity().activate(QStringLiteral("editor"));
    } else if (cause == u"dismiss") {
        notch.controller.dismiss();
    } else {
        notch.viewModel.beginRouting({KestroModule::Assets});
        notch.viewModel.scheduleRoutingEnd();
        notch.clock.advance(170ms);
    }
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    deliverAnswers();
    QVERIFY(!notch.host().hasKeyboard());
}

void NotchControllerTest::aPressOnACandidateOfTheInputMethodKeepsItOpen()
{
    RunningNotch notch;
    notch.openByClick();
    deliverAnswers();
    QVERIFY(notch.host().hasKeyboard());
    const auto press = [&notch] {
        notch.platform.outsideActivity().press();
        notch.clock.advance(1s);
        return notch.viewModel.phase();
    };
    notch.controller.setComposing(true);
    QCOMPARE(press(), Phase::Expanded);
    notch.controller.setComposing(false); // what was chosen is heard of before the press
    QCOMPARE(press(), Phase::Expanded);
    QCOMPARE(press(), Phase::Idle);

    notch.openByClick();
    deliverAnswers();
    notch.controller.setComposing(true);
    notch.host().loseKeyboard();
    QCOMPARE(press(), Phase::Idle);
}

void NotchControllerTest::returnsAKeyboardGrantedTooLate()
{
    RunningNotch notch;
    notch.openByClick();
    notch.controller.dismiss();
    deliverAnswers();
    deliverAnswers();
    QVERIFY(!notch.host().hasKeyboard());
}

void NotchControllerTest::takesTheKeyboardOnlyWhereAsked()
{
    RunningNotch notch;
    notch.openByHover();
    deliverAnswers();
    QVERIFY(!notch.host().hasKeyboard());
    const int raises = notch.host().raiseCount();
    notch.controller.present(KestroModule::Color, Focus::Take, Opening::Explicit, {QStringLiteral("token")});
    deliverAnswers();
    QVERIFY(notch.host().hasKeyboard());
    QCOMPARE(notch.host().lastToken(), QStringLiteral("token"));
    QCOMPARE(notch.host().raiseCount(), raises + 1);
    QCOMPARE(notch.viewModel.selection(), std::optional(KestroModule::Color));
}

void NotchControllerTest::escapeGoesBackThenCloses()
{
    RunningNotch notch;
    notch.controller.present(KestroModule::Clipboard, Focus::Take, Opening::Explicit);
    notch.controller.escapePressed();
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QCOMPARE(notch.viewModel.selection(), std::nullopt);
    notch.controller.escapePressed();
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchControllerTest::catchesADragThatBeganElsewhere()
{
    RunningNotch notch;
    notch.platform.dragSense().beginDrag(); // one that was over before the press
    notch.pressOutside();
    notch.clock.advance(1s);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    notch.platform.dragSense().beginDrag();
    QVERIFY(notch.viewModel.isDragCatchArmed()); // not only at the next look
    QCOMPARE(notch.controller.windowSize(), QSizeF(680, 380));
    notch.clock.advance(3s);
    QVERIFY(notch.viewModel.isDragCatchArmed());

    notch.platform.dragSense().release();
    notch.clock.advance(200ms);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    notch.clock.advance(520ms);
    QCOMPARE(notch.controller.windowSize(), QSizeF(298, 75));
    QCOMPARE(notch.clock.pendingCount(), 0);

    // A press that is told when the drag has begun already.
    notch.platform.dragSense().press();
    notch.platform.dragSense().beginDrag();
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    notch.platform.outsideActivity().press();
    QVERIFY(notch.viewModel.isDragCatchArmed());
}

void NotchControllerTest::ignoresPressesThatDragNothing_data()
{
    QTest::addColumn<bool>("catches");
    QTest::addColumn<bool>("seesButtons");
    QTest::addColumn<bool>("drags");
    QTest::addColumn<int>("watchedForMs");
    QTest::newRow("click") << true << true << false << 180;
    QTest::newRow("released before it is heard of") << true << true << true << 180;
    QTest::newRow("buttons unseen") << true << false << false << 30060;
    QTest::newRow("switched off") << false << true << true << 0;
}

void NotchControllerTest::ignoresPressesThatDragNothing()
{
    QFETCH(const bool, catches);
    QFETCH(const bool, seesButtons);
    QFETCH(const bool, drags);
    QFETCH(const int, watchedForMs);
    RunningNotch notch;
    notch.settings.setCatchDraggedFiles(catches);
    int changes = 0;
    const auto observer = notch.viewModel.bindableDragCatchArmed().addNotifier([&changes] { ++changes; });
    notch.pressOutside();
    if (seesButtons)
        notch.platform.dragSense().release();
    else
        notch.platform.dragSense().forgetButton();
    if (drags)
        notch.platform.dragSense().beginDrag();
    notch.clock.advance(std::chrono::milliseconds(watchedForMs));
    QCOMPARE(changes, 0);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchControllerTest::followsThePointerOnlyWhileIdle()
{
    RunningNotch notch({kLeft, kRight});
    FakePointerNear &pointer = notch.platform.pointerNear();
    QVERIFY(pointer.isWatchingScreen());
    pointer.moveToScreen(kRight.name);
    QCOMPARE(notch.host().screenName(), kRight.name);

    notch.openByClick();
    QVERIFY(!pointer.isWatchingScreen());
    pointer.moveToScreen(kLeft.name);
    QCOMPARE(notch.host().screenName(), kRight.name);
    // Once it has closed, it goes to where the pointer went meanwhile.
    notch.controller.dismiss();
    QVERIFY(pointer.isWatchingScreen());
    QCOMPARE(notch.host().screenName(), kRight.name);
    notch.clock.advance(520ms);
    QCOMPARE(notch.host().screenName(), kLeft.name);

    notch.platform.screens().arrange({kLeft});
    QVERIFY(!pointer.isWatchingScreen());
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchControllerTest::opensWhereThePointerIs()
{
    RunningNotch notch({kLeft, kRight});
    notch.openByClick();
    notch.platform.pointerNear().moveToScreen(kRight.name);
    notch.controller.present(KestroModule::Color, Focus::Take, Opening::Explicit);
    QCOMPARE(notch.host().screenName(), kRight.name);
}

void NotchControllerTest::staysOnItsScreenWhileItExists()
{
    RunningNotch notch({kLeft, kRight});
    notch.openByClick();
    QList<SurfaceMotion> motions;
    const auto observer =
        notch.viewModel.bindableMetrics().addNotifier([&] { motions.append(notch.viewModel.motion()); });

    Screen moved = kLeft;
    moved.frame.moveLeft(1280);
    moved.topBarHeight = 40;
    Screen rightFirst = kRight;
    rightFirst.frame.moveLeft(0);
    notch.platform.screens().arrange({rightFirst, moved});
    QCOMPARE(notch.host().screenName(), kLeft.name);
    QCOMPARE(notch.controller.currentScreen(), std::optional(moved));
    QCOMPARE(notch.viewModel.metrics().menuBarHeight, 40.0);
    QCOMPARE(motions, QList<SurfaceMotion>{SurfaceMotion::Zone});
    QCOMPARE(notch.panel.geometry().center().x(), QRectF(moved.frame).toRect().center().x());

    // What happens to another screen is none of its business.
    const int places = notch.host().placeCount();
    rightFirst.scale = 2;
    notch.platform.screens().arrange({rightFirst, moved});
    QCOMPARE(notch.host().placeCount(), places);

    // Unplugged while open: to the main screen, for the pointer's is gone too.
    notch.platform.screens().arrange({rightFirst});
    QCOMPARE(notch.host().screenName(), kRight.name);
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QCOMPARE(notch.viewModel.metrics().menuBarHeight, 24.0);
}

void NotchControllerTest::waitsForAScreen()
{
    RunningNotch notch((QList<Screen>()));
    QCOMPARE(notch.host().placeCount(), 0);
    QCOMPARE(notch.controller.currentScreen(), std::nullopt);
    QCOMPARE(notch.viewModel.metrics(), NotchMetrics());
    notch.openByClick();
    notch.platform.screens().arrange({kLeft});
    QCOMPARE(notch.host().screenName(), kLeft.name);
    QCOMPARE(notch.host().size(), QSizeF(680, 200));
    notch.platform.screens().arrange({});
    notch.controller.dismiss();
    notch.clock.advance(1s);
    notch.platform.screens().arrange({kRight});
    QCOMPARE(notch.host().screenName(), kRight.name);
    QCOMPARE(notch.host().size(), QSizeF(298, 75));
}

void NotchControllerTest::takesADeclaredNotchLive()
{
    RunningNotch notch;
    notch.settings.setRaw(QStringLiteral("display.notch"), QJsonObject{{kLeft.name, QStringLiteral("185x38")}});
    QVERIFY(notch.viewModel.metrics().hasHardwareNotch);
    QCOMPARE(notch.viewModel.geometry().contentSize, QSizeF(192, 59));
    QCOMPARE(notch.host().size(), QSizeF(298, 110));
    notch.settings.reset(QStringLiteral("display.notch"));
    QVERIFY(!notch.viewModel.metrics().hasHardwareNotch);
}

void NotchControllerTest::sleepsWhileNothingHappens()
{
    RunningNotch notch({kLeft, kRight});
    QCOMPARE(notch.clock.pendingCount(), 0);
    notch.openByClick();
    notch.clock.advance(1s);
    QCOMPARE(notch.clock.pendingCount(), 0);
    notch.controller.dismiss();
    notch.clock.advance(1s);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

OSTRELLE_TEST(NotchControllerTest)
#include "NotchControllerTest.moc"
