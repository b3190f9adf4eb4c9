#include "windows/ShortcutRecorder.h"
#include "SettingsFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QKeyEvent>

#include <functional>

using namespace ostrelle;

namespace {

constexpr quint32 kA = 0;
constexpr quint32 kC = 8;
constexpr quint32 kV = 9;
constexpr quint32 kDelete = 51;
constexpr quint32 kEscape = 53;
constexpr Qt::KeyboardModifiers kShiftSuper = Qt::ShiftModifier | Qt::MetaModifier;

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

struct RecorderStage : SettingsFixture
{
    RecorderStage() { open(SettingsSection::Shortcuts); }

    ShortcutRecorder &recorder(ShortcutAction action) const
    {
        auto *found = find<ShortcutRecorder>(title(action));
        if (found == nullptr)
            qFatal("no such recorder");
        return *found;
    }
    QAbstractButton &keys(ShortcutAction action) const
    {
        const ShortcutRecorder &one = recorder(action);
        for (auto *button : one.findChildren<QAbstractButton *>()) {
            if (button->accessibleName() == one.label())
                return *button;
        }
        qFatal("no button");
    }
    QAbstractButton *remove(ShortcutAction action) const
    {
        for (auto *button : recorder(action).findChildren<QAbstractButton *>()) {
            if (button->accessibleName() == latin("Remove shortcut") && button->isVisible())
                return button;
        }
        return nullptr;
    }
    void begin(ShortcutAction action)
    {
        QTest::mouseClick(&keys(action), Qt::LeftButton);
        settle();
    }
    /// A key by its place on the board, at whatever has the focus.
    void type(quint32 keyCode, Qt::KeyboardModifiers modifiers, Qt::Key key = Qt::Key_unknown)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, 0, keyCode, 0);
        QWidget *focused = window().focusWidget();
        QApplication::sendEvent(focused != nullptr ? focused : &window(), &event);
        settle();
    }
    std::optional<KeyCombo> stored(ShortcutAction action)
    {
        const KeyCombos combos = loadKeyCombos(database);
        return combos.contains(action) ? std::optional(combos[action]) : std::nullopt;
    }
};

using Action = ShortcutAction;

} // namespace

class ShortcutRecorderTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void recordsAndRegistersAtOnce();
    void endsWithoutAChange_data();
    void endsWithoutAChange();
    void waitsOutKeysWithoutAModifier();
    void deleteRemovesForGood_data();
    void deleteRemovesForGood();
    void refusesWhatAnotherActionHas();
    void takesWhatItHasAlready();
    void aRegisteredKeyIsHeardAndDoesNothingElse();
    void onlyOneRecordsAtATime();
    void nothingElseHearsTheKeys();
    void theRemoveButtonHandsItsFocusOn();
    void theRowTellsOfARefusal();
    void theGeneralPageWarnsUntilThereIsAShortcut();
};

void ShortcutRecorderTest::recordsAndRegistersAtOnce()
{
    RecorderStage stage;
    QCOMPARE(stage.recorder(Action::ToggleNotch).label(), latin("Not set"));
    QVERIFY(!stage.remove(Action::ToggleNotch));
    stage.begin(Action::ToggleNotch);
    QCOMPARE(stage.recorder(Action::ToggleNotch).label(), latin("Press keys…"));
    stage.type(kC, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(stage.recorder(Action::ToggleNotch).label(), latin("⌃⌥C"));
    QCOMPARE(stage.stored(Action::ToggleNotch), (KeyCombo{kC, KeyCombo::kControl | KeyCombo::kOption}));
    QCOMPARE(stage.hotKeys.state(1), HotKeys::State::Granted);
    QVERIFY(stage.remove(Action::ToggleNotch));
}

void ShortcutRecorderTest::endsWithoutAChange_data()
{
    using Ending = std::function<void(RecorderStage &)>;
    QTest::addColumn<Ending>("end");
    QTest::newRow("Escape") << Ending([](RecorderStage &stage) { stage.type(kEscape, {}, Qt::Key_Escape); });
    QTest::newRow("Escape with modifiers")
        << Ending([](RecorderStage &stage) { stage.type(kEscape, kShiftSuper, Qt::Key_Escape); });
    QTest::newRow("a second click") << Ending([](RecorderStage &stage) { stage.begin(Action::OpenClipboard); });
    QTest::newRow("the window loses the keyboard") << Ending([](RecorderStage &stage) {
        QEvent event(QEvent::WindowDeactivate);
        QApplication::sendEvent(&stage.window(), &event);
    });
    QTest::newRow("another page") << Ending([](RecorderStage &stage) { stage.click(latin("General")); });
}

void ShortcutRecorderTest::endsWithoutAChange()
{
    QFETCH(const std::function<void(RecorderStage &)>, end);
    RecorderStage stage;
    stage.begin(Action::OpenClipboard);
    end(stage);
    QVERIFY(stage.controllerOfWindow.window());
    QCOMPARE(stage.stored(Action::OpenClipboard), (KeyCombo{kV, KeyCombo::kShift | KeyCombo::kCommand}));
    // Keys and shortcuts are themselves again.
    stage.hotKeys.press(kV, kShiftSuper);
    QTRY_COMPARE(stage.doings, QStringList(latin("clipboard")));
    stage.press(Qt::Key_Escape);
    QVERIFY(!stage.controllerOfWindow.window());
}

void ShortcutRecorderTest::waitsOutKeysWithoutAModifier()
{
    RecorderStage stage;
    stage.begin(Action::PickColor);
    stage.type(kA, {}, Qt::Key_A);
    stage.type(56, Qt::ShiftModifier, Qt::Key_Shift);
    QKeyEvent released(QEvent::KeyRelease, Qt::Key_Shift, {});
    QApplication::sendEvent(&stage.window(), &released);
    QCOMPARE(stage.recorder(Action::PickColor).label(), latin("Press keys…"));
    stage.type(kC, Qt::AltModifier, Qt::Key_C);
    QCOMPARE(stage.recorder(Action::PickColor).label(), latin("⌥C"));
}

void ShortcutRecorderTest::deleteRemovesForGood_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Backspace") << kDelete << Qt::KeyboardModifiers() << Qt::Key_Backspace;
    QTest::newRow("with modifiers") << kDelete << kShiftSuper << Qt::Key_Backspace;
    QTest::newRow("the key named Delete") << 117U << Qt::KeyboardModifiers() << Qt::Key_Delete;
}

void ShortcutRecorderTest::deleteRemovesForGood()
{
    QFETCH(const quint32, code);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const Qt::Key, key);
    RecorderStage stage;
    stage.begin(Action::OpenClipboard);
    stage.type(code, modifiers, key);
    QCOMPARE(stage.recorder(Action::OpenClipboard).label(), latin("Not set"));
    QVERIFY(!stage.stored(Action::OpenClipboard));
    QVERIFY(!stage.hotKeys.state(2));
}

void ShortcutRecorderTest::refusesWhatAnotherActionHas()
{
    RecorderStage stage;
    stage.begin(Action::PickColor);
    stage.type(kV, kShiftSuper);
    const ShortcutRecorder &recorder = stage.recorder(Action::PickColor);
    QCOMPARE(recorder.accessibleDescription(), latin("Used by Open Clipboard"));
    QCOMPARE(recorder.label(), latin("⇧⌘C"));
    QCOMPARE(stage.stored(Action::PickColor)->keyCode, kC);
    stage.begin(Action::PickColor);
    QVERIFY(recorder.accessibleDescription().isEmpty());
}

void ShortcutRecorderTest::takesWhatItHasAlready()
{
    RecorderStage stage;
    stage.begin(Action::PickColor);
    stage.type(kC, kShiftSuper);
    QVERIFY(!stage.recorder(Action::PickColor).isRecording());
    QVERIFY(stage.recorder(Action::PickColor).accessibleDescription().isEmpty());
    QCOMPARE(stage.recorder(Action::PickColor).label(), latin("⇧⌘C"));
}

void ShortcutRecorderTest::aRegisteredKeyIsHeardAndDoesNothingElse()
{
    RecorderStage stage;
    stage.begin(Action::ToggleNotch);
    stage.hotKeys.press(kV, kShiftSuper);
    QTRY_COMPARE(stage.recorder(Action::ToggleNotch).accessibleDescription(), latin("Used by Open Clipboard"));
    QVERIFY(stage.doings.isEmpty());
}

void ShortcutRecorderTest::onlyOneRecordsAtATime()
{
    RecorderStage stage;
    stage.begin(Action::OpenClipboard);
    stage.begin(Action::PickColor);
    QVERIFY(!stage.recorder(Action::OpenClipboard).isRecording());
    QVERIFY(stage.recorder(Action::PickColor).isRecording());
    stage.hotKeys.press(kC, kShiftSuper);
    QTRY_VERIFY(!stage.recorder(Action::PickColor).isRecording());
    QVERIFY(stage.doings.isEmpty());
}

void ShortcutRecorderTest::nothingElseHearsTheKeys()
{
    RecorderStage stage;
    stage.begin(Action::ToggleNotch);
    QWidget *focused = stage.window().focusWidget();
    stage.type(48, {}, Qt::Key_Tab);
    stage.type(125, {}, Qt::Key_Down);
    QCOMPARE(stage.window().focusWidget(), focused);
    QCOMPARE(stage.controllerOfWindow.window()->view().section(), SettingsSection::Shortcuts);
    stage.type(13, Qt::ControlModifier, Qt::Key_W); // is a combination, and closes nothing
    QVERIFY(stage.controllerOfWindow.window());
    QCOMPARE(stage.stored(Action::ToggleNotch), (KeyCombo{13, KeyCombo::kControl}));
}

void ShortcutRecorderTest::theRemoveButtonHandsItsFocusOn()
{
    RecorderStage stage;
    stage.remove(Action::OpenClipboard)->setFocus();
    stage.press(Qt::Key_Return);
    stage.settle();
    QVERIFY(!stage.stored(Action::OpenClipboard));
    QVERIFY(stage.keys(Action::OpenClipboard).hasFocus());
}

void ShortcutRecorderTest::theRowTellsOfARefusal()
{
    RecorderStage stage;
    const auto toolTip = [&stage] { return stage.recorder(Action::ToggleNotch).parentWidget()->toolTip(); };
    stage.hotKeys.holdElsewhere(kA, Qt::AltModifier);
    stage.begin(Action::ToggleNotch);
    QTest::ignoreMessage(QtWarningMsg, "Alt+A does not work for \"Open Notch\": another program may hold it");
    stage.layout.use({{kA, latin("A")}, {kC, latin("C")}, {kV, latin("V")}});
    stage.type(kA, Qt::AltModifier);
    QCOMPARE(stage.recorder(Action::ToggleNotch).label(), latin("⌥A"));
    QVERIFY(!toolTip().isEmpty());
    stage.hotKeys.letGoElsewhere();
    stage.hotKeys.askAgain();
    stage.settle();
    QTRY_VERIFY(toolTip().isEmpty());
}

void ShortcutRecorderTest::theGeneralPageWarnsUntilThereIsAShortcut()
{
    RecorderStage stage;
    const QString warning = latin("With this off, set an Open Notch shortcut so you can still reach your tools.");
    stage.click(latin("General"));
    QVERIFY(!stage.find<QWidget>(warning));
    stage.click(latin("Show automatically"));
    QVERIFY(stage.find<QWidget>(warning));
    stage.loginItem.setStatus(LoginItem::Status::RequiresApproval);
    stage.launch.setEnabled(false); // asks nobody; the warning about the shortcut comes first all the same
    QVERIFY(stage.find<QWidget>(warning));
    stage.shortcuts.set(KeyCombo{kA, KeyCombo::kOption}, Action::ToggleNotch);
    QVERIFY(!stage.find<QWidget>(warning));
    QVERIFY(stage.find<QWidget>(latin("Login item is turned off in System Settings ▸ General ▸ Login Items.")));
}

OSTRELLE_TEST(ShortcutRecorderTest)
#include "ShortcutRecorderTest.moc"
