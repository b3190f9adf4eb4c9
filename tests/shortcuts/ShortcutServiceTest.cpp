#include "shortcuts/ShortcutService.h"
#include "foundation/DefaultsDatabase.h"
#include "shortcuts/KeyEventCombo.h"
#include "shortcuts/ShortcutActions.h"
#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

namespace {

using Registration = ShortcutService::Registration;

constexpr quint32 kZ = 6;
constexpr quint32 kC = 8;
constexpr quint32 kV = 9;
constexpr Qt::KeyboardModifiers kShiftSuper = Qt::ShiftModifier | Qt::MetaModifier;

/// Notes what was done.
struct Doings final : ShortcutActions
{
    void toggleNotch(const ActivationToken &token) override { note("toggle", token); }
    void openClipboard(const ActivationToken &token) override { note("clipboard", token); }
    void pickColor(const ActivationToken &token) override { note("color", token); }

    void note(const char *what, const ActivationToken &token)
    {
        done << QString::fromLatin1(what);
        lastToken = token.value;
    }

    QStringList done;
    QString lastToken;
};

} // namespace

class ShortcutServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_service.reset();
        m_database.reset(); // writes before its folder goes
        m_folder.emplace();
        m_doings = {};
        launch();
    }

    void worksFromTheFirstStartOn()
    {
        QVERIFY(m_hotKeys->keys().isEmpty());
        m_service->start();
        m_service->start(); // does nothing more
        m_hotKeys->press(kV, kShiftSuper);
        QVERIFY(m_doings.done.isEmpty()); // never from inside the desktop's own handling
        QTRY_COMPARE(m_doings.done, QStringList(QStringLiteral("clipboard")));
        QCOMPARE(m_doings.lastToken, QStringLiteral("pressed"));
        m_hotKeys->press(kC, kShiftSuper);
        QTRY_COMPARE(m_doings.done.last(), QStringLiteral("color"));
        QCOMPARE(m_service->registration(ShortcutAction::ToggleNotch), Registration::Unset);
        QCOMPARE(m_service->registration(ShortcutAction::PickColor), Registration::Registered);
        QCOMPARE(m_hotKeys->keys().first().name, QStringLiteral("openClipboard"));
        QCOMPARE(m_hotKeys->keys().first().id, 2);
    }

    void changesTakeEffectAtOnceAndAreKept()
    {
        m_service->start();
        QSignalSpy spy(this, &ShortcutServiceTest::observed);
        const auto notifier = m_service->bindableCombos().addNotifier([this] { Q_EMIT observed(); });
        m_service->set(KeyCombo{kZ, KeyCombo::kControl | KeyCombo::kOption}, ShortcutAction::ToggleNotch);
        m_service->set(std::nullopt, ShortcutAction::OpenClipboard);
        m_service->set(std::nullopt, ShortcutAction::OpenClipboard);
        QCOMPARE(spy.count(), 2); // only real changes
        m_hotKeys->press(kV, kShiftSuper);
        m_hotKeys->press(kZ, Qt::ControlModifier | Qt::AltModifier);
        QTRY_COMPARE(m_doings.done, QStringList(QStringLiteral("toggle")));
        QCOMPARE(m_service->registration(ShortcutAction::OpenClipboard), Registration::Unset);
        QCOMPARE(m_service->conflict({kC, 0x0300}, ShortcutAction::ToggleNotch), ShortcutAction::PickColor);
        QVERIFY(!m_service->conflict({kC, 0x0300}, ShortcutAction::PickColor));

        launch(); // the removed one stays removed
        QCOMPARE(m_service->combos(),
                 (KeyCombos{{ShortcutAction::ToggleNotch, {kZ, 0x1800}}, {ShortcutAction::PickColor, {kC, 0x0300}}}));
    }

    void keepsWhatTheDesktopRefuses()
    {
        m_hotKeys->holdElsewhere(kV, kShiftSuper);
        const auto refusal = R"(Shift+Super+V does not work for "Open Clipboard": another program may hold it)";
        QTest::ignoreMessage(QtWarningMsg, refusal);
        m_service->start();
        QCOMPARE(m_service->registration(ShortcutAction::OpenClipboard), Registration::Refused);
        QCOMPARE(display(m_service->combos()[ShortcutAction::OpenClipboard], m_service->keyNames()),
                 QStringLiteral("⇧⌘V"));
        QSignalSpy changed(m_service.get(), &ShortcutService::registrationsChanged);
        // Said once, however often it is tried again.
        m_hotKeys->askAgain();
        m_service->set(KeyCombo{kZ, KeyCombo::kCommand}, ShortcutAction::ToggleNotch);
        QCOMPARE(changed.count(), 0);
        m_hotKeys->letGoElsewhere();
        m_hotKeys->askAgain();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_service->registration(ShortcutAction::OpenClipboard), Registration::Registered);
        // Chosen by the user, it is said again.
        m_hotKeys->holdElsewhere(kZ, kShiftSuper);
        QTest::ignoreMessage(QtWarningMsg,
                             R"(Shift+Super+Z does not work for "Open Clipboard": another program may hold it)");
        m_service->set(KeyCombo{kZ, 0x0300}, ShortcutAction::OpenClipboard);
        QCOMPARE(m_service->combos()[ShortcutAction::OpenClipboard].keyCode, kZ);
        launch();
        QCOMPARE(m_service->combos()[ShortcutAction::OpenClipboard].keyCode, kZ);
    }

    void tellsOnceWhereOnlyCommandsHelp()
    {
        m_hotKeys->handOutNone();
        QTest::ignoreMessage(QtWarningMsg, "This desktop hands out no shortcuts; bind \"ostrelle toggle\" and "
                                           "\"ostrelle open clipboard\" in its settings");
        m_service->start();
        m_service->set(KeyCombo{kZ, KeyCombo::kCommand}, ShortcutAction::ToggleNotch);
        QCOMPARE(m_service->registration(ShortcutAction::ToggleNotch), Registration::Refused);
    }

    void handsRegisteredKeysToWhoRecords()
    {
        m_service->start();
        std::optional<KeyCombo> recorded;
        auto recorder = std::make_unique<QObject>();
        const auto record = [&](const KeyCombo &combo) {
            recorded = combo;
            m_service->stopRecording();
        };
        m_service->startRecording(recorder.get(), record);
        m_hotKeys->press(kV, kShiftSuper);
        QTRY_COMPARE(recorded, (KeyCombo{kV, 0x0300}));
        QVERIFY(m_doings.done.isEmpty());
        recorded.reset();
        m_hotKeys->press(kC, kShiftSuper);
        QTRY_COMPARE(m_doings.done, QStringList(QStringLiteral("color")));
        // Its window has been closed meanwhile.
        m_service->startRecording(recorder.get(), record);
        recorder.reset();
        m_hotKeys->press(kV, kShiftSuper);
        QTRY_COMPARE(m_doings.done.last(), QStringLiteral("clipboard"));
        QVERIFY(!recorded);
    }

    void takesACombinationFromAKeyEvent()
    {
        const auto pressed = [this](Qt::KeyboardModifiers modifiers) {
            return keyComboFrom(QKeyEvent(QEvent::KeyPress, 0, modifiers, 0, kV, 0), m_layout);
        };
        QCOMPARE(pressed(kShiftSuper | Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier),
                 (KeyCombo{kV, 0x1b00}));
        QVERIFY(!pressed(Qt::GroupSwitchModifier));
        QCOMPARE(toolkitModifiers(0x1b00), kShiftSuper | Qt::ControlModifier | Qt::AltModifier);
    }

Q_SIGNALS:
    void observed();

private:
    /// The program starts, after it has ended.
    void launch()
    {
        m_service.reset();
        m_database.reset();
        m_hotKeys = std::make_unique<FakeHotKeys>();
        m_database = std::make_unique<DefaultsDatabase>(m_folder->filePath(QStringLiteral("defaults.json")));
        m_service = std::make_unique<ShortcutService>(*m_database, *m_hotKeys, m_layout, m_doings);
    }

    std::optional<QTemporaryDir> m_folder;
    FakeKeyboardLayout m_layout;
    Doings m_doings;
    std::unique_ptr<FakeHotKeys> m_hotKeys;
    std::unique_ptr<DefaultsDatabase> m_database;
    std::unique_ptr<ShortcutService> m_service;
};

OSTRELLE_TEST(ShortcutServiceTest)

#include "ShortcutServiceTest.moc"
