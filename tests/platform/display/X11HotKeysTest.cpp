#include "platform/x11/X11HotKeys.h"
#include "PeerKeyboard.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/XcbXkb.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QKeyEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

namespace {

constexpr quint32 kV = 9;
constexpr Qt::KeyboardModifiers kShiftSuper = Qt::ShiftModifier | Qt::MetaModifier;

} // namespace

/// Hot keys and key names on a keyboard whose locks, layouts and modifiers change.
class X11HotKeysTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void holdsWithTheLocksInAnyState();
    void staysOnItsPlaceAndIsCalledWhatTheLayoutPrints_data();
    void staysOnItsPlaceAndIsCalledWhatTheLayoutPrints();
    void followsTheChosenLayout();
    void followsItsModifiers();
    void isHeardAgainAfterAReleaseThatWentElsewhere();
    void leavesTheKeyboardFree();
    void comesThroughAnOpenMenu();
    void refusesAKeyThatNoBoardHas();

private:
    void setMap(const QString &program, const QStringList &arguments);
    void lockLayout(std::uint8_t group);

    std::unique_ptr<WatchConnection> m_watch;
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<X11Keyboard> m_layout;
    std::unique_ptr<X11HotKeys> m_hotKeys;
    std::unique_ptr<PeerKeyboard> m_keys;
    int m_presses = 0;
};

void X11HotKeysTest::init()
{
    TestBase::init();
    PeerKeyboard::setMap(QStringLiteral("setxkbmap"), {QStringLiteral("us")});
    m_watch = WatchConnection::open();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_layout = std::make_unique<X11Keyboard>(*m_watch, *m_scheduler);
    m_hotKeys = std::make_unique<X11HotKeys>(*m_watch, *m_layout);
    m_keys = std::make_unique<PeerKeyboard>();
    m_presses = 0;
    connect(m_hotKeys.get(), &HotKeys::pressed, this, [this] { ++m_presses; });
    m_hotKeys->set({{2, kV, kShiftSuper, QStringLiteral("openClipboard"), {}}});
    QCOMPARE(m_hotKeys->state(2), HotKeys::State::Granted);
}

void X11HotKeysTest::cleanup()
{
    m_keys.reset();
    m_hotKeys.reset();
    m_layout.reset();
    m_watch.reset();
    m_scheduler.reset();
}

/// Changes the keyboard map, and waits until it has been noticed.
void X11HotKeysTest::setMap(const QString &program, const QStringList &arguments)
{
    QSignalSpy noticed(m_layout.get(), &X11Keyboard::mapChanged);
    PeerKeyboard::setMap(program, arguments);
    QTRY_VERIFY(noticed.count() > 0);
}

void X11HotKeysTest::lockLayout(std::uint8_t group)
{
    xcb_xkb_latch_lock_state(m_watch->xcb(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    m_watch->flush();
}

void X11HotKeysTest::holdsWithTheLocksInAnyState()
{
    setMap(QStringLiteral("xmodmap"), {QStringLiteral("-e"), QStringLiteral("add mod3 = Scroll_Lock")});
    constexpr xcb_keycode_t kCapsLock = 66;
    constexpr xcb_keycode_t kNumLock = 77;
    constexpr xcb_keycode_t kScrollLock = 78;
    int expected = 0;
    for (int scroll = 0; scroll < 2; ++scroll, m_keys->tap(kScrollLock)) {
        for (int num = 0; num < 2; ++num, m_keys->tap(kNumLock)) {
            for (int caps = 0; caps < 2; ++caps, m_keys->tap(kCapsLock)) {
                m_keys->press(kV, kShiftSuper);
                ++expected;
                QTRY_COMPARE(m_presses, expected);
            }
        }
    }
}

void X11HotKeysTest::staysOnItsPlaceAndIsCalledWhatTheLayoutPrints_data()
{
    using Names = QMap<quint32, QString>;
    QTest::addColumn<QString>("layout");
    QTest::addColumn<Names>("names");
    const auto row = [](const char *layout, const Names &names) {
        QTest::newRow(layout) << QString::fromUtf8(layout) << names;
    };
    row("de", {{9, QStringLiteral("V")},
               {16, QStringLiteral("Z")},
               {41, QString::fromUtf8("Ö")},
               {50, QStringLiteral("^")},
               {83, QStringLiteral("1")}});
    row("fr", {{9, QStringLiteral("V")}, {12, QStringLiteral("A")}, {18, QStringLiteral("&")}});
    row("us(dvorak)", {{9, QStringLiteral("K")}});
    row("ru", {{9, QStringLiteral("V")}, {12, QStringLiteral("Q")}});
    row("ru,de", {{9, QStringLiteral("V")}, {16, QStringLiteral("Z")}});
}

void X11HotKeysTest::staysOnItsPlaceAndIsCalledWhatTheLayoutPrints()
{
    QFETCH(const QString, layout);
    using Names = QMap<quint32, QString>;
    QFETCH(const Names, names);
    setMap(QStringLiteral("setxkbmap"),
           {QStringLiteral("-layout"), layout.section(u'(', 0, 0), QStringLiteral("-variant"),
            layout.section(u'(', 1).chopped(layout.contains(u'(') ? 1 : 0)});
    const Names actual = m_layout->keyNames();
    for (auto name = names.begin(); name != names.end(); ++name) {
        QCOMPARE(actual.value(name.key()), *name);
    }
    QCOMPARE(KeyboardLayout::currentKeyNames(), actual);
    QVERIFY(!actual.contains(36)); // Return prints nothing
    const QKeyEvent event(QEvent::KeyPress, 0, {}, PeerKeyboard::keyAt(kV), 0, 0);
    QCOMPARE(m_layout->keyCodeOf(event), kV);
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 1);
}

void X11HotKeysTest::followsTheChosenLayout()
{
    setMap(QStringLiteral("setxkbmap"), {QStringLiteral("us,de,ru")});
    constexpr quint32 kRightOfT = 16;
    QSignalSpy changed(m_layout.get(), &KeyboardLayout::changed);
    QCOMPARE(m_layout->keyNames().value(kRightOfT), QStringLiteral("Y"));
    lockLayout(1);
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(m_layout->keyNames().value(kRightOfT), QStringLiteral("Z"));
    lockLayout(2); // has no Latin letters
    lockLayout(0);
    QTRY_COMPARE(changed.count(), 2);
    QCOMPARE(m_layout->keyNames().value(kRightOfT), QStringLiteral("Y"));
}

void X11HotKeysTest::followsItsModifiers()
{
    setMap(QStringLiteral("xmodmap"), {QStringLiteral("-e"), QStringLiteral("clear mod4"), QStringLiteral("-e"),
                                       QStringLiteral("add mod3 = Super_L")});
    QCOMPARE(m_hotKeys->state(2), HotKeys::State::Granted);
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 1);
}

void X11HotKeysTest::isHeardAgainAfterAReleaseThatWentElsewhere()
{
    m_keys->hold(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 1);
    // As when a grab of the whole keyboard was taken over and given back meanwhile.
    xcb_ungrab_keyboard(m_watch->xcb(), XCB_CURRENT_TIME);
    m_watch->flush();
    QVERIFY(m_keys->grabAll());
    m_keys->ungrabAll();
    m_keys->release();
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 2);
}

void X11HotKeysTest::leavesTheKeyboardFree()
{
    QVERIFY(m_keys->grabAll()); // a menu, a locked screen
    m_keys->press(kV, kShiftSuper);
    m_keys->ungrabAll();
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 1); // of the two the second
    QVERIFY(m_keys->grabAll());
    m_keys->ungrabAll();
    m_hotKeys->set({});
    QVERIFY(m_keys->grabAll());
}

void X11HotKeysTest::comesThroughAnOpenMenu()
{
    QMenu menu;
    QMenu &submenu = *menu.addMenu(QStringLiteral("More"));
    submenu.addAction(QStringLiteral("An action"));
    menu.popup(QPoint(100, 100));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    submenu.popup(QPoint(300, 100));
    QVERIFY(QTest::qWaitForWindowExposed(&submenu));
    QVERIFY(!m_keys->grabAll()); // the menu has it
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 1);
    QVERIFY(!menu.isVisible() && !submenu.isVisible());
    m_keys->press(kV, kShiftSuper);
    QTRY_COMPARE(m_presses, 2);
}

void X11HotKeysTest::refusesAKeyThatNoBoardHas()
{
    constexpr quint32 kNoKey = 4000;
    m_hotKeys->set({{1, kNoKey, kShiftSuper, QStringLiteral("none"), {}},
                    {2, kV, kShiftSuper, QStringLiteral("openClipboard"), {}},
                    {3, kV, kShiftSuper, QStringLiteral("the same once more"), {}}});
    QCOMPARE(m_hotKeys->state(1), HotKeys::State::Refused);
    QCOMPARE(m_hotKeys->state(2), HotKeys::State::Granted);
    QCOMPARE(m_hotKeys->state(3), HotKeys::State::Refused);
}

} // namespace ostrelle

using ostrelle::X11HotKeysTest;
OSTRELLE_TEST(X11HotKeysTest)

#include "X11HotKeysTest.moc"
