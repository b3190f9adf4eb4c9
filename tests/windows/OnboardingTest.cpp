#include "WindowFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "windows/controls/SwitchButton.h"
#include "windows/onboarding/NotchDemo.h"
#include "windows/onboarding/OnboardingGround.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/OnboardingWindowController.h"
#include "windows/onboarding/ToolPicker.h"

#include <QCloseEvent>
#include <QPointer>
#include <QSet>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

/// The first run over the real stores, on a desktop of fakes.
struct OnboardingFixture : WindowFixture
{
    OnboardingWindowController welcome{
        OnboardingSurroundings{
            .settings = settings, .appearance = appearance, .scheduler = clock, .shortcuts = shortcuts},
        controller, foreground, platform.ordinaryWindows()};

    /// On the step of this number.
    QWidget &open(int step = 0)
    {
        welcome.show();
        for (int i = 0; i < step; ++i) {
            press(Qt::Key_Return);
            frame();
        }
        rest();
        return window();
    }
    /// The tests' way to what only the controller may change.
    QWidget &window() const override { return const_cast<OnboardingWindow &>(*welcome.window()); }
    OnboardingWindow &onboarding() const { return static_cast<OnboardingWindow &>(window()); }
    int step() const { return welcome.window()->view().step(); }
    /// One frame, in which nothing has come to rest.
    void frame()
    {
        QCoreApplication::processEvents();
        clock.advance(16ms);
    }
    /// All movement comes to its end, and less time passes than a tool is shown.
    void rest() override
    {
        QCoreApplication::processEvents();
        clock.advance(1200ms);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    SwitchButton *toolSwitch() const { return window().findChild<SwitchButton *>(); }
    /// The picker's for the tool on show.
    QAbstractButton &pickerButton() const
    {
        for (auto *button : window().findChild<ToolPicker *>()->findChildren<QAbstractButton *>()) {
            if (button->isChecked())
                return *button;
        }
        qFatal("none is chosen");
    }
    /// The tool on show.
    QString tool() const { return toolSwitch()->accessibleName(); }
};

} // namespace

class OnboardingTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void anyWayOfClosingCompletesIt_data();
    void anyWayOfClosingCompletesIt();
    void getStartedOpensTheSelector();
    void leavesOnceHoweverOftenItIsTold_data();
    void leavesOnceHoweverOftenItIsTold();
    void staysWhenItIsAskedForAtTheLastMoment();
    void leadsThroughItsStepsAndBack();
    void aKeyThatIsHeldGoesOneStep();
    void itsButtonsStayOnALowScreen();
    void keysAloneReachEverything_data();
    void keysAloneReachEverything();
    void switchesShowAndHideToolsAtOnce();
    void advancesByItselfUntilAToolIsPicked();
    void keepsASwitchThatSomeoneIsAboutToFlip();
    void nothingAdvancesOrTravelsWithReducedMotion();
    void theDemonstrationOpensAndClosesWhileItIsSeen();
    void theLookTakesEffectAtOnce();
    void showsTheShortcutsOfTheMoment();
    void groundLetsNothingThroughThatNobodyBlurs_data();
    void groundLetsNothingThroughThatNobodyBlurs();
};

void OnboardingTest::anyWayOfClosingCompletesIt_data()
{
    using Way = std::function<void(OnboardingFixture &)>;
    QTest::addColumn<Way>("close");
    QTest::newRow("Escape") << Way([](OnboardingFixture &stage) { stage.press(Qt::Key_Escape); });
    QTest::newRow("Ctrl+W") << Way([](OnboardingFixture &stage) { stage.press(Qt::Key_W, Qt::ControlModifier); });
    QTest::newRow("close button") << Way([](OnboardingFixture &stage) { stage.click(latin("Close")); });
    QTest::newRow("window manager") << Way([](OnboardingFixture &stage) { stage.window().close(); });
}

void OnboardingTest::anyWayOfClosingCompletesIt()
{
    QFETCH(const std::function<void(OnboardingFixture &)>, close);
    OnboardingFixture stage;
    const QPointer<QWidget> window = &stage.open(1);
    stage.welcome.show(); // comes to the front as it is, and takes no second session
    QCOMPARE(stage.step(), 1);
    QCOMPARE(stage.foreground.depth(), 1);
    QVERIFY(!stage.settings.hasCompletedOnboarding());
    close(stage);
    stage.rest();
    QVERIFY(!window);
    QCOMPARE(stage.foreground.depth(), 0);
    QCOMPARE(stage.viewModel.phase(), Phase::Idle);
    QVERIFY(SettingsStore(stage.database).hasCompletedOnboarding());
    // What is gone no longer listens, and nothing goes on.
    stage.settings.setNotchTheme(NotchTheme::Aurora);
    const int fired = stage.clock.firedCount();
    stage.clock.advance(1min);
    QCOMPARE(stage.clock.firedCount(), fired);
    stage.open();
    QCOMPARE(stage.step(), 0);
}

void OnboardingTest::getStartedOpensTheSelector()
{
    OnboardingFixture stage;
    stage.open(4);
    stage.click(latin("Get Started"));
    QVERIFY(!stage.welcome.window());
    QVERIFY(stage.settings.hasCompletedOnboarding());
    QCOMPARE(stage.foreground.depth(), 0);
    QCOMPARE(stage.viewModel.phase(), Phase::Expanded);
    QVERIFY(!stage.viewModel.selection());
    QVERIFY(stage.platform.panelHost().hasKeyboard());
}

void OnboardingTest::leavesOnceHoweverOftenItIsTold_data()
{
    using Way = std::function<void(OnboardingFixture &)>;
    QTest::addColumn<Way>("leave");
    QTest::newRow("started twice") << Way([](OnboardingFixture &stage) {
        Q_EMIT stage.onboarding().finished();
        Q_EMIT stage.onboarding().deactivated();
    });
    QTest::newRow("started, and closed at once") << Way([](OnboardingFixture &stage) { stage.window().close(); });
    QTest::newRow("closed twice") << Way([](OnboardingFixture &stage) {
        const QPointer<QWidget> window = &stage.window();
        window->close();
        QCloseEvent again;
        QCoreApplication::sendEvent(window, &again);
    });
    QTest::newRow("no keyboard for the notch") << Way([](OnboardingFixture &stage) { stage.clock.advance(300ms); });
}

void OnboardingTest::leavesOnceHoweverOftenItIsTold()
{
    QFETCH(const std::function<void(OnboardingFixture &)>, leave);
    OnboardingFixture stage;
    stage.platform.panelHost().refuseKeyboard();
    stage.open(4);
    stage.foreground.begin(); // another window's
    Q_EMIT stage.onboarding().finished();
    // As the last moment of a window that is still in front.
    connect(&stage.onboarding(), &OnboardingWindow::closed, &stage.onboarding(), &OnboardingWindow::deactivated);
    leave(stage);
    stage.rest();
    QVERIFY(!stage.welcome.window());
    QCOMPARE(stage.foreground.depth(), 1);
    QCOMPARE(stage.viewModel.phase(), Phase::Expanded);
}

void OnboardingTest::staysWhenItIsAskedForAtTheLastMoment()
{
    OnboardingFixture stage;
    stage.platform.panelHost().refuseKeyboard();
    stage.open(4);
    Q_EMIT stage.onboarding().finished();
    stage.welcome.show();
    Q_EMIT stage.onboarding().deactivated();
    stage.clock.advance(1s);
    QVERIFY(stage.welcome.window());
}

void OnboardingTest::leadsThroughItsStepsAndBack()
{
    OnboardingFixture stage;
    const QWidget &window = stage.open();
    QCOMPARE(window.windowTitle(), latin("Welcome to Ostrelle"));
    QVERIFY(!stage.find<QAbstractButton>(latin("Back")));
    const QStringList titles = {latin("Ostrelle"), latin("It lives at the top of your screen"), latin("Six tools"),
                                latin("Make it yours"), latin("You're set")};
    for (int step = 0; step < onboarding::kSteps; ++step) {
        QCOMPARE(stage.step(), step);
        QVERIFY2(stage.find<QWidget>(titles.at(step)), qPrintable(titles.at(step)));
        QVERIFY(stage.find<QWidget>(QStringLiteral("Step %1 of 5").arg(step + 1)));
        if (step < 4)
            stage.click(latin("Continue"));
    }
    QVERIFY(!stage.find<QAbstractButton>(latin("Continue")));
    // In the middle of a change, too.
    for (int step = 3; step >= 0; --step) {
        QTest::mouseClick(&stage.button(latin("Back")), Qt::LeftButton);
        stage.frame();
        QCOMPARE(stage.step(), step);
    }
    stage.rest();
    QVERIFY(stage.find<QWidget>(titles.first()));
    QCOMPARE(window.focusWidget(), &stage.button(latin("Continue")));
}

void OnboardingTest::aKeyThatIsHeldGoesOneStep()
{
    OnboardingFixture stage;
    stage.open(2);
    for (QWidget *focused :
         {static_cast<QWidget *>(stage.toolSwitch()), static_cast<QWidget *>(&stage.button(latin("Continue")))}) {
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(focused, &repeated);
        stage.rest();
        QCOMPARE(stage.step(), 2);
    }
}

void OnboardingTest::itsButtonsStayOnALowScreen()
{
    OnboardingFixture stage;
    stage.platform.screens().arrange({FakeScreens::make(latin("low"), QRectF(0, 0, 911, 512))});
    stage.open(1);
    const QAbstractButton &button = stage.button(latin("Continue"));
    QVERIFY(button.mapToGlobal(QPoint(0, button.height())).y() < 512);
}

void OnboardingTest::keysAloneReachEverything_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("least");
    QTest::newRow("welcome") << 0 << 2;
    QTest::newRow("reach") << 1 << 3;
    QTest::newRow("tools") << 2 << 5;
    QTest::newRow("look") << 3 << 5;
    QTest::newRow("ready") << 4 << 3;
}

void OnboardingTest::keysAloneReachEverything()
{
    QFETCH(const int, step);
    QFETCH(const int, least);
    OnboardingFixture stage;
    const QWidget &window = stage.open(step);
    QSet<QWidget *> wanted;
    for (auto *button : window.findChildren<QAbstractButton *>()) {
        if (!button->isVisible())
            continue;
        QVERIFY2(!button->accessibleName().isEmpty(), button->metaObject()->className());
        // Of those that exclude each other one is a stop, and arrow keys go on from there.
        const bool isStop = !button->autoExclusive() || button->isChecked();
        if (isStop && (button->focusPolicy() & Qt::TabFocus) != 0)
            wanted.insert(button);
    }
    QVERIFY(wanted.size() >= least);
    QSet<QWidget *> reached;
    for (int i = 0; i < 12; ++i) {
        stage.press(Qt::Key_Tab);
        reached.insert(window.focusWidget());
    }
    QCOMPARE(reached, wanted);
}

void OnboardingTest::switchesShowAndHideToolsAtOnce()
{
    OnboardingFixture stage;
    stage.open(2);
    QCOMPARE(stage.tool(), latin("Clipboard"));
    const auto flip = [&stage] {
        QTest::mouseClick(stage.toolSwitch(), Qt::LeftButton);
        return stage.toolSwitch()->toolTip();
    };
    QCOMPARE(flip(), latin("Hidden from the notch"));
    QVERIFY(!stage.settings.activeModules().contains(KestroModule::Clipboard));
    QVERIFY(!SettingsStore(stage.database).enabledModules().contains(KestroModule::Clipboard));
    QCOMPARE(flip(), latin("Shown in the notch"));
    QCOMPARE(stage.settings.activeModules(), QList<KestroModule>(kAllModules.begin(), kAllModules.end()));
}

void OnboardingTest::advancesByItselfUntilAToolIsPicked()
{
    OnboardingFixture stage;
    stage.open(2);
    QCOMPARE(stage.tool(), latin("Clipboard"));
    stage.clock.advance(2100ms); // 3.3 s since the step was shown
    QCOMPARE(stage.tool(), latin("Clipboard"));
    stage.clock.advance(100ms);
    QCOMPARE(stage.tool(), latin("Color"));
    QCOMPARE(stage.pickerButton().accessibleName(), latin("Color"));
    stage.clock.advance(5 * 3400ms);
    QCOMPARE(stage.tool(), latin("Clipboard"));

    stage.click(latin("Projects"));
    QCOMPARE(stage.tool(), latin("Projects"));
    stage.clock.advance(1min);
    QCOMPARE(stage.tool(), latin("Projects"));
    // Arrows pick as well; Return still goes on.
    stage.pickerButton().setFocus();
    stage.press(Qt::Key_Right);
    QCOMPARE(stage.tool(), latin("Image Info"));
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.step(), 3);
    // From behind, Tab comes to the tool on show.
    stage.rest();
    stage.click(latin("Back"));
    QCOMPARE(stage.window().focusWidget()->accessibleName(), latin("Continue"));
    stage.press(Qt::Key_Backtab, Qt::ShiftModifier);
    stage.press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(stage.window().focusWidget(), &stage.pickerButton());
    stage.press(Qt::Key_Return);
    // For good.
    stage.rest();
    stage.click(latin("Back"));
    QCOMPARE(stage.tool(), latin("Image Info"));
    stage.clock.advance(1min);
    QCOMPARE(stage.tool(), latin("Image Info"));
}

void OnboardingTest::keepsASwitchThatSomeoneIsAboutToFlip()
{
    OnboardingFixture stage;
    stage.open(2);
    stage.toolSwitch()->setFocus();
    stage.clock.advance(1min);
    QCOMPARE(stage.tool(), latin("Clipboard"));
    stage.press(Qt::Key_Space);
    QVERIFY(!stage.settings.enabledModules().contains(KestroModule::Clipboard));
    stage.button(latin("Continue")).setFocus();
    stage.clock.advance(3400ms);
    QCOMPARE(stage.tool(), latin("Color"));
}

void OnboardingTest::nothingAdvancesOrTravelsWithReducedMotion()
{
    OnboardingFixture stage;
    stage.platform.appearance().setPrefersReducedMotion(true);
    stage.open(1);
    stage.press(Qt::Key_Return);
    stage.clock.advance(80ms);
    const auto *header = stage.find<QWidget>(latin("Six tools"));
    QVERIFY(header != nullptr);
    QCOMPARE(header->mapTo(&stage.window(), QPoint()).x(), onboarding::kShadowRoom.left());
    stage.rest();
    stage.clock.advance(1min);
    QCOMPARE(stage.tool(), latin("Clipboard"));
}

void OnboardingTest::theDemonstrationOpensAndClosesWhileItIsSeen()
{
    OnboardingFixture stage;
    stage.open();
    stage.press(Qt::Key_Return);
    const auto *demo = stage.window().findChild<NotchDemo *>();
    QVERIFY(demo != nullptr);
    QVERIFY(!demo->isOpen());
    for (int round = 0; round < 2; ++round) {
        stage.clock.advance(680ms);
        QVERIFY(!demo->isOpen());
        stage.clock.advance(20ms);
        QVERIFY(demo->isOpen());
        stage.clock.advance(2580ms);
        QVERIFY(demo->isOpen());
        stage.clock.advance(20ms);
        QVERIFY(!demo->isOpen());
    }
    stage.clock.advance(680ms);
    const QImage closed = stage.window().grab().toImage();
    stage.clock.advance(1500ms);
    QVERIFY(stage.window().grab().toImage() != closed);
    stage.press(Qt::Key_Return);
    stage.press(Qt::Key_Return);
    stage.rest();
    const int fired = stage.clock.firedCount();
    stage.clock.advance(1min);
    QCOMPARE(stage.clock.firedCount(), fired);
}

void OnboardingTest::theLookTakesEffectAtOnce()
{
    OnboardingFixture stage;
    stage.settings.setAppearance(AppearancePreference::Dark);
    QWidget &window = stage.open(3);
    const QPoint ground = onboarding::contentRect(onboarding::kShadowRoom).topLeft() + QPoint(10, 400);
    const auto pixel = [&window, ground] { return window.grab().toImage().pixelColor(ground); };
    QCOMPARE(pixel(), QColor(17, 14, 20));
    stage.click(latin("Light"));
    QCOMPARE(stage.settings.appearance(), AppearancePreference::Light);
    QCOMPARE(pixel(), QColor(249, 247, 251));
    stage.click(latin("Ember"));
    QCOMPARE(stage.settings.notchTheme(), NotchTheme::Ember);
    stage.button(latin("Ember")).setFocus();
    stage.press(Qt::Key_Up);
    QCOMPARE(stage.settings.notchTheme(), NotchTheme::Spectrum);
    stage.settings.setNotchTheme(NotchTheme::Frost);
    QVERIFY(stage.button(latin("Frost")).isChecked());
}

void OnboardingTest::showsTheShortcutsOfTheMoment()
{
    OnboardingFixture stage;
    stage.open(4);
    const auto keys = [&stage](const char *action) {
        return stage.find<QWidget>(latin(action))->accessibleDescription();
    };
    QCOMPARE(keys("Open Notch"), latin("Not set"));
    QCOMPARE(keys("Open Clipboard"), latin("⇧⌘V"));
    QCOMPARE(keys("Pick Color"), latin("⇧⌘C"));
    stage.shortcuts.set(KeyCombo{9, KeyCombo::kControl | KeyCombo::kOption}, ShortcutAction::ToggleNotch);
    stage.shortcuts.set(std::nullopt, ShortcutAction::PickColor);
    QCOMPARE(keys("Open Notch"), latin("⌃⌥V"));
    QCOMPARE(keys("Pick Color"), latin("Not set"));
}

void OnboardingTest::groundLetsNothingThroughThatNobodyBlurs_data()
{
    QTest::addColumn<OwnFrame::Backing>("backing");
    QTest::addColumn<int>("inside");
    QTest::addColumn<bool>("hasShadow");
    QTest::newRow("blurred") << OwnFrame::Backing::Blurred << 214 << true;
    QTest::newRow("translucent") << OwnFrame::Backing::Translucent << 255 << true;
    QTest::newRow("opaque") << OwnFrame::Backing::Opaque << 255 << false;
}

void OnboardingTest::groundLetsNothingThroughThatNobodyBlurs()
{
    QFETCH(const OwnFrame::Backing, backing);
    QFETCH(const int, inside);
    QFETCH(const bool, hasShadow);
    const QRect content = onboarding::contentRect(onboarding::kShadowRoom);
    for (const double ratio : {1.0, 1.25}) {
        const QImage picture =
            OnboardingGround{.backing = backing, .shadowRoom = onboarding::kShadowRoom}.picture(ratio);
        const auto alphaAt = [&](const QPoint &at) { return qAlpha(picture.pixel((QPointF(at) * ratio).toPoint())); };
        QVERIFY(std::abs(alphaAt(content.center() + QPoint(0, 100)) - inside) <= 1);
        QCOMPARE(alphaAt({content.center().x(), content.y() + content.height() + 12}) > 20, hasShadow);
        QVERIFY(alphaAt({2, 2}) <= 1);
        // A window that is cut to its outline has no half covered corner.
        QCOMPARE(alphaAt(content.topLeft() + QPoint(1, 1)) == 255, !hasShadow);
    }
}

OSTRELLE_TEST(OnboardingTest)
#include "OnboardingTest.moc"
