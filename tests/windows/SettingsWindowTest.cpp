#include "SettingsFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "windows/ThemeSwatch.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QTextEdit>

using namespace ostrelle;

namespace {

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class SettingsWindowTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void switchesStoreAndFollowTheirSettings_data();
    void switchesStoreAndFollowTheirSettings();
    void pickersStoreAndFollowTheirSettings_data();
    void pickersStoreAndFollowTheirSettings();
    void aValueThatIsNoChoiceIsShownAsItIs();
    void segmentsAreChosenByPointerAndKeys();
    void themesAreChosenByPointerAndKeys();
    void theLaunchSwitchShowsWhatTheDesktopSays();
    void theSidebarIsMovedThroughByKeys();
    void everyControlHasANameAndIsReachedByTab_data();
    void everyControlHasANameAndIsReachedByTab();
    void thereIsOneWindowWhichComesToTheFrontAsItIs();
    void aClosedWindowGivesEverythingBack_data();
    void aClosedWindowGivesEverythingBack();
    void canBeClosedWhileItMoves();
    void aPickerIsAtRestAfterItsMenu();
    void aMenuCastsItsShadowOnTheWindow();
    void theFirstPageFitsAndRestsWithoutMoving();
    void followsTheAppearance();
};

void SettingsWindowTest::switchesStoreAndFollowTheirSettings_data()
{
    QTest::addColumn<SettingsSection>("section");
    QTest::addColumn<QString>("key");
    QTest::newRow("Show automatically") << SettingsSection::General << "general.showAutomatically";
    QTest::newRow("Catch dragged files") << SettingsSection::General << "general.catchDraggedFiles";
    QTest::newRow("Haptic feedback") << SettingsSection::General << "general.haptics";
    QTest::newRow("Remember clipboard history") << SettingsSection::Privacy << "clipboard.enabled";
    QTest::newRow("Skip concealed copies") << SettingsSection::Privacy << "clipboard.ignoreConcealed";
    QTest::newRow("Clear history on quit") << SettingsSection::Privacy << "clipboard.clearOnQuit";
    QTest::newRow("Check for updates automatically") << SettingsSection::About << "updates.autoCheck";
}

void SettingsWindowTest::switchesStoreAndFollowTheirSettings()
{
    QFETCH(const SettingsSection, section);
    QFETCH(const QString, key);
    SettingsFixture stage;
    stage.open(section);
    const QString name = latin(QTest::currentDataTag());
    const bool before = stage.settings.raw(key).toBool();
    QCOMPARE(stage.button(name).isChecked(), before);

    stage.click(name);
    QCOMPARE(stage.settings.raw(key).toBool(), !before);
    QCOMPARE(SettingsStore(stage.database).raw(key).toBool(), !before);
    stage.button(name).setFocus();
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.settings.raw(key).toBool(), before);

    stage.settings.setRaw(key, !before);
    QCOMPARE(stage.button(name).isChecked(), !before);
}

void SettingsWindowTest::pickersStoreAndFollowTheirSettings_data()
{
    QTest::addColumn<SettingsSection>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QList<double>>("values");
    QTest::newRow("Open on hover") << SettingsSection::General << "general.hoverOpenDelay"
                                   << QStringList{latin("Off (click to open)"),
                                                  latin("0.3 s"),
                                                  latin("0.5 s"),
                                                  latin("1 s"),
                                                  latin("1.5 s"),
                                                  latin("2 s")}
                                   << QList<double>{0, 0.3, 0.5, 1, 1.5, 2};
    QTest::newRow("Items to keep") << SettingsSection::Privacy << "clipboard.limit"
                                   << QStringList{latin("20"), latin("40"), latin("60"), latin("100"), latin("200")}
                                   << QList<double>{20, 40, 60, 100, 200};
}

void SettingsWindowTest::pickersStoreAndFollowTheirSettings()
{
    QFETCH(const SettingsSection, section);
    QFETCH(const QString, key);
    QFETCH(const QStringList, choices);
    QFETCH(const QList<double>, values);
    SettingsFixture stage;
    stage.open(section);
    const QString name = latin(QTest::currentDataTag());
    auto *picker = stage.find<PopupPicker>(name);
    QVERIFY(picker != nullptr);
    for (int i = 0; i < choices.size(); ++i) {
        stage.choose(name, choices.at(i));
        QCOMPARE(stage.settings.raw(key).toDouble(), values.at(i));
        QCOMPARE(picker->text(), choices.at(i));
    }
    picker->setFocus();
    stage.press(Qt::Key_Up);
    QCOMPARE(stage.settings.raw(key).toDouble(), values.at(values.size() - 2));
    stage.settings.setRaw(key, values.first());
    QCOMPARE(picker->text(), choices.first());
    stage.press(Qt::Key_Up); // there is none before it
    QCOMPARE(stage.settings.raw(key).toDouble(), values.first());
}

void SettingsWindowTest::aValueThatIsNoChoiceIsShownAsItIs()
{
    SettingsFixture stage;
    stage.settings.setHoverOpenDelay(0.75);
    stage.open(SettingsSection::General);
    QCOMPARE(stage.find<PopupPicker>(latin("Open on hover"))->text(), latin("0.75 s"));
    QCOMPARE(stage.settings.hoverOpenDelay(), 0.75);
}

void SettingsWindowTest::segmentsAreChosenByPointerAndKeys()
{
    SettingsFixture stage;
    stage.open(SettingsSection::General);
    stage.click(latin("Expressive"));
    QCOMPARE(stage.settings.animationIntensity(), AnimationIntensity::Expressive);
    stage.button(latin("Animation intensity")).setFocus();
    stage.press(Qt::Key_Left);
    stage.press(Qt::Key_Left);
    stage.press(Qt::Key_Left);
    QCOMPARE(stage.settings.animationIntensity(), AnimationIntensity::Subtle);
    QVERIFY(stage.button(latin("Subtle")).isChecked());
    stage.settings.setAnimationIntensity(AnimationIntensity::Standard);
    QVERIFY(stage.button(latin("Standard")).isChecked());
    QVERIFY(!stage.button(latin("Subtle")).isChecked());
}

void SettingsWindowTest::themesAreChosenByPointerAndKeys()
{
    SettingsFixture stage;
    stage.open(SettingsSection::Appearance);
    stage.click(latin("Ember"));
    QCOMPARE(stage.settings.notchTheme(), NotchTheme::Ember);
    stage.button(latin("Ember")).setFocus();
    stage.press(Qt::Key_Right);
    QCOMPARE(stage.settings.notchTheme(), NotchTheme::Ultraviolet);
    stage.press(Qt::Key_Up);
    QCOMPARE(stage.settings.notchTheme(), NotchTheme::Sunset);
    stage.settings.setNotchTheme(NotchTheme::Frost);
    QVERIFY(stage.button(latin("Frost")).isChecked());
    QVERIFY(!stage.button(latin("Sunset")).isChecked());
}

void SettingsWindowTest::theLaunchSwitchShowsWhatTheDesktopSays()
{
    SettingsFixture stage;
    stage.open(SettingsSection::General);
    const QString name = latin("Launch at login");
    const QString turnedOff = latin("Login item is turned off in System Settings ▸ General ▸ Login Items.");
    stage.click(name);
    QCOMPARE(stage.loginItem.status(), LoginItem::Status::Enabled);
    QVERIFY(!stage.find<QWidget>(turnedOff));

    stage.loginItem.setStatus(LoginItem::Status::RequiresApproval);
    QEvent activated(QEvent::WindowActivate);
    QApplication::sendEvent(&stage.window(), &activated);
    stage.settle();
    QVERIFY(!stage.button(name).isChecked());
    QVERIFY(stage.find<QWidget>(turnedOff));

    stage.loginItem.problem = latin("no room");
    QTest::ignoreMessage(QtWarningMsg, "Launch at login change failed: no room");
    stage.click(name);
    QVERIFY(!stage.button(name).isChecked());
    stage.loginItem.problem.clear();
    stage.click(name);
    QVERIFY(stage.button(name).isChecked());
    QVERIFY(!stage.find<QWidget>(turnedOff));
    const int calls = stage.loginItem.calls();
    stage.launch.setEnabled(true);
    QCOMPARE(stage.loginItem.calls(), calls);
}

void SettingsWindowTest::theSidebarIsMovedThroughByKeys()
{
    SettingsFixture stage;
    stage.open(SettingsSection::General);
    const auto chosen = [&stage] { return title(stage.controllerOfWindow.window()->view().section()); };
    stage.press(Qt::Key_Up);
    QCOMPARE(chosen(), latin("General"));
    stage.press(Qt::Key_Down);
    QCOMPARE(chosen(), latin("Modules"));
    stage.press(Qt::Key_End);
    QCOMPARE(chosen(), latin("About"));
    stage.press(Qt::Key_A);
    QCOMPARE(chosen(), latin("Appearance"));
    stage.clock.advance(std::chrono::seconds(2));
    stage.press(Qt::Key_P);
    QCOMPARE(chosen(), latin("Privacy"));
    stage.clock.advance(std::chrono::seconds(2));
    stage.press(Qt::Key_A);
    stage.press(Qt::Key_B);
    QCOMPARE(chosen(), latin("About"));
    QVERIFY(stage.button(latin("About")).isChecked());
}

void SettingsWindowTest::everyControlHasANameAndIsReachedByTab_data()
{
    QTest::addColumn<SettingsSection>("section");
    for (const SettingsSection section : kAllSettingsSections)
        QTest::newRow(qPrintable(title(section))) << section;
}

void SettingsWindowTest::everyControlHasANameAndIsReachedByTab()
{
    QFETCH(const SettingsSection, section);
    SettingsFixture stage;
    QWidget &window = stage.open(section);
    QSet<QWidget *> wanted;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible() || (!qobject_cast<QAbstractButton *>(widget) && !qobject_cast<QTextEdit *>(widget)))
            continue;
        QVERIFY2(!widget->accessibleName().isEmpty(), widget->metaObject()->className());
        // Of those that exclude each other one is a stop, and arrow keys go on from there.
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        if (button && button->autoExclusive() && !button->isChecked())
            continue;
        if ((widget->focusPolicy() & Qt::TabFocus) != 0)
            wanted.insert(widget);
    }
    QSet<QWidget *> reached;
    for (int i = 0; i < 60; ++i) {
        stage.press(Qt::Key_Tab);
        reached.insert(window.focusWidget());
    }
    QCOMPARE(reached, wanted);
    QVERIFY(wanted.size() > 1);
}

void SettingsWindowTest::thereIsOneWindowWhichComesToTheFrontAsItIs()
{
    SettingsFixture stage;
    stage.controller.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
    const QWidget *first = &stage.open(SettingsSection::Privacy);
    QCOMPARE(stage.viewModel.phase(), Phase::Idle);
    QCOMPARE(stage.foreground.depth(), 1);
    QCOMPARE(first->windowTitle(), latin("Ostrelle Settings"));
    QCOMPARE(first->size(), QSize(620, 452));
    stage.open(SettingsSection::About);
    QCOMPARE(&stage.window(), first);
    QCOMPARE(stage.controllerOfWindow.window()->view().section(), SettingsSection::Privacy);
    QCOMPARE(stage.foreground.depth(), 1);
    QCOMPARE(stage.platform.ordinaryWindows().count(), 2);
}

void SettingsWindowTest::aClosedWindowGivesEverythingBack_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifier>("modifier");
    QTest::newRow("Escape") << Qt::Key_Escape << Qt::NoModifier;
    QTest::newRow("Ctrl+W") << Qt::Key_W << Qt::ControlModifier;
}

void SettingsWindowTest::aClosedWindowGivesEverythingBack()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifier, modifier);
    SettingsFixture stage;
    const QPointer<QWidget> window = &stage.open(SettingsSection::Appearance);
    stage.press(key, modifier);
    stage.settle();
    QVERIFY(!window);
    QVERIFY(!stage.controllerOfWindow.window());
    QCOMPARE(stage.foreground.depth(), 0);
    // What is gone no longer listens.
    stage.settings.setNotchTheme(NotchTheme::Aurora);
    stage.settings.setAppearance(AppearancePreference::Light);
    stage.open(SettingsSection::About);
    QCOMPARE(stage.controllerOfWindow.window()->view().section(), SettingsSection::About);
    QCOMPARE(stage.foreground.depth(), 1);
    stage.click(latin("Quit Ostrelle"));
    QCOMPARE(stage.quits, 1);
}

void SettingsWindowTest::canBeClosedWhileItMoves()
{
    SettingsFixture stage;
    QWidget &window = stage.open(SettingsSection::General);
    stage.click(latin("Haptic feedback"));
    QTest::mouseClick(&stage.button(latin("Haptic feedback")), Qt::LeftButton);
    stage.clock.advance(std::chrono::milliseconds(20));
    QVERIFY(stage.clock.pendingCount() > 0);
    window.close();
    stage.settle();
    QVERIFY(!stage.controllerOfWindow.window());
    QCOMPARE(stage.clock.pendingCount(), 0);
}

void SettingsWindowTest::aPickerIsAtRestAfterItsMenu()
{
    SettingsFixture stage;
    stage.open(SettingsSection::General);
    auto *picker = stage.find<PopupPicker>(latin("Open on hover"));
    QVERIFY(picker != nullptr);
    const QImage before = picker->grab().toImage();
    QTest::mousePress(picker, Qt::LeftButton);
    stage.settle();
    QVERIFY(picker->grab().toImage() != before);
    // The menu keeps what the pointer does from then on to itself.
    stage.platform.popups().menu()->close();
    stage.settle();
    QVERIFY(picker->grab().toImage() == before);
}

void SettingsWindowTest::aMenuCastsItsShadowOnTheWindow()
{
    SettingsFixture stage;
    QWidget &window = stage.open(SettingsSection::General);
    window.move(0, 0); // the whole menu fits on the toolkit's screen
    const QImage before = window.grab().toImage();
    QTest::mousePress(stage.find<PopupPicker>(latin("Open on hover")), Qt::LeftButton);
    const QMenu &menu = *stage.platform.popups().menu();
    const QPoint below = window.mapFromGlobal(menu.geometry().bottomLeft()) + QPoint(20, 6);
    const auto lightAt = [&window](const QPoint &place) {
        return window.grab().toImage().pixelColor(place).lightness();
    };
    QVERIFY(lightAt(below) < before.pixelColor(below).lightness());
    stage.platform.popups().menu()->close();
    stage.settle();
    QCOMPARE(lightAt(below), before.pixelColor(below).lightness());
}

void SettingsWindowTest::theFirstPageFitsAndRestsWithoutMoving()
{
    SettingsFixture stage;
    QWidget &window = stage.open(SettingsSection::General);
    const auto *area = window.findChild<QScrollArea *>();
    QVERIFY(area != nullptr);
    QCOMPARE(area->verticalScrollBar()->maximum(), 0);
    QVERIFY(area->widget()->width() == 620 - 184);
    const int fired = stage.clock.firedCount();
    stage.clock.advance(std::chrono::minutes(1));
    QCOMPARE(stage.clock.firedCount(), fired);
}

void SettingsWindowTest::followsTheAppearance()
{
    SettingsFixture stage;
    stage.settings.setAppearance(AppearancePreference::Dark);
    QWidget &window = stage.open(SettingsSection::General);
    const auto page = [&window] { return window.grab().toImage().pixelColor(190, 4); };
    QCOMPARE(page(), QColor(0x1E, 0x1B, 0x22));
    stage.click(latin("Appearance"));
    stage.click(latin("Light"));
    stage.settle();
    QCOMPARE(page(), QColor(0xF6, 0xF3, 0xF8));
}

OSTRELLE_TEST(SettingsWindowTest)
#include "SettingsWindowTest.moc"
