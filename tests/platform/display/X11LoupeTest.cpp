#include "Compositor.h"
#include "PeerClient.h"
#include "PeerKeyboard.h"
#include "platform/ColourPicker.h"
#include "platform/HotKeys.h"
#include "platform/OutsideActivity.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <vector>

namespace ostrelle {

/// The loupe between the server's pixels, other programs and the user's hands.
class X11LoupeTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void walksPixelByPixelWithTheKeys_data();
    void walksPixelByPixelWithTheKeys();
    void findsEveryCorner_data();
    void findsEveryCorner();
    void showsWhatWasThereBefore();
    void hasAShadowWhileThereIsACompositor();
    void givesPointerAndKeyboardBack_data();
    void givesPointerAndKeyboardBack();
    void keepsItsPressesFromEverybodyElse();
    void waitsForAGrabThatEnds();
    void givesUpWhereTheGrabStays_data();
    void givesUpWhereTheGrabStays();
    void keepsWhatWasGatheredWithoutTheKeyboard();
    void closesTheProgramsOwnMenus();
    void takesTheKeyboardWhileItsShortcutIsHeld();
    void leavesTheLoupeToAnotherProcess();

private:
    static constexpr xcb_keysym_t kReturn = 0xff0d;
    static constexpr xcb_keysym_t kEscape = 0xff1b;
    static constexpr xcb_keysym_t kSpace = 0x20;
    static constexpr xcb_keysym_t kShift = 0xffe1;
    static constexpr xcb_keysym_t kLeft = 0xff51;
    static constexpr xcb_keysym_t kUp = 0xff52;
    static constexpr xcb_keysym_t kRight = 0xff53;
    static constexpr xcb_keysym_t kDown = 0xff54;

    /// Every pixel of the desktop has a colour of its own within its surroundings.
    static QRgb colourAt(const QPoint &p) { return qRgb(p.x() % 256, p.y() % 256, p.x() / 256 * 16 + p.y() / 256); }
    void open(const QPoint &pointer);
    bool isShownAt(const QPoint &hotSpot);
    bool isPicked(const QPoint &position);
    bool isEverythingFree();
    void arrangeScreens(std::initializer_list<const char *> arguments);

    std::unique_ptr<PeerClient> m_peer;
    std::unique_ptr<Platform> m_platform;
    xcb_window_t m_background = XCB_WINDOW_NONE;
    std::unique_ptr<QObject> m_context;
    std::vector<std::optional<PickedColour>> m_ended;
};

void X11LoupeTest::init()
{
    TestBase::init();
    m_ended.clear();
    m_peer = std::make_unique<PeerClient>();
    m_platform = Platform::create(QStringLiteral("x11"), QString());
    m_context = std::make_unique<QObject>();
    QImage image(1920, 1080, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            row[x] = colourAt(QPoint(x, y));
        }
    }
    m_background = m_peer->open(QRect(0, 0, 1920, 1080), PeerClient::Kind::OverrideRedirect);
    m_peer->paint(m_background, image);
}

void X11LoupeTest::cleanup()
{
    m_context.reset();
    m_platform.reset();
    m_peer.reset();
}

bool X11LoupeTest::isShownAt(const QPoint &hotSpot)
{
    // Its middle square in a white frame, seen on the side that is on the desktop.
    const int distance = qRound(5 * qApp->devicePixelRatio());
    const QPoint frame = hotSpot + QPoint(0, hotSpot.y() < 540 ? distance : -distance);
    return m_peer->pixel(frame) == QColor(Qt::white).rgb();
}

void X11LoupeTest::open(const QPoint &pointer)
{
    m_peer->movePointer(pointer);
    QVERIFY(m_platform->colourPicker().pick(
        m_context.get(), {.gathered = {}, .finished = [this](auto colour) { m_ended.push_back(colour); }}));
    QTRY_VERIFY(isShownAt(pointer));
}

bool X11LoupeTest::isPicked(const QPoint &position)
{
    if (m_ended.size() != 1 || !m_ended.front()) {
        return false;
    }
    const auto eightBits = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    const PickedColour &colour = *m_ended.front();
    return qRgb(eightBits(colour.red), eightBits(colour.green), eightBits(colour.blue)) == colourAt(position);
}

bool X11LoupeTest::isEverythingFree()
{
    const bool isFree = m_peer->grabPointer() && m_peer->grabKeyboard();
    m_peer->releasePointer();
    m_peer->releaseKeyboard();
    return isFree;
}

void X11LoupeTest::walksPixelByPixelWithTheKeys_data()
{
    QTest::addColumn<QList<uint>>("keys");
    QTest::addColumn<bool>("withShift");
    QTest::addColumn<QPoint>("movement");
    QTest::newRow("one pixel each") << QList<uint>{kLeft, kUp, kUp, kLeft, kLeft, kDown} << false << QPoint(-3, -1);
    QTest::newRow("ten pixels each") << QList<uint>{kRight, kRight, kDown} << true << QPoint(20, 10);
}

void X11LoupeTest::walksPixelByPixelWithTheKeys()
{
    QFETCH(QList<uint>, keys);
    QFETCH(bool, withShift);
    QFETCH(QPoint, movement);
    const QPoint start(700, 400);
    open(start);
    if (withShift) {
        m_peer->key(kShift, /*down=*/true);
    }
    for (const uint key : keys) {
        m_peer->key(key);
    }
    if (withShift) {
        m_peer->key(kShift, /*down=*/false);
    }
    m_peer->key(kReturn);
    QTRY_VERIFY(!m_ended.empty());
    QVERIFY(isPicked(start + movement));
}

void X11LoupeTest::findsEveryCorner_data()
{
    QTest::addColumn<QPoint>("corner");
    QTest::newRow("top left") << QPoint(0, 0);
    QTest::newRow("top right") << QPoint(1919, 0);
    QTest::newRow("bottom left") << QPoint(0, 1079);
    QTest::newRow("bottom right") << QPoint(1919, 1079);
}

void X11LoupeTest::findsEveryCorner()
{
    QFETCH(QPoint, corner);
    open(corner);
    // Keys cannot leave the screen.
    m_peer->key(corner.x() == 0 ? kLeft : kRight);
    m_peer->key(corner.y() == 0 ? kUp : kDown);
    m_peer->key(kSpace);
    QTRY_VERIFY(!m_ended.empty());
    QVERIFY(isPicked(corner));
}

void X11LoupeTest::showsWhatWasThereBefore()
{
    open(QPoint(300, 500));
    const xcb_window_t later = m_peer->open(QRect(0, 0, 1920, 1080), PeerClient::Kind::OverrideRedirect);
    m_peer->movePointer(QPoint(900, 500));
    QTRY_VERIFY(isShownAt(QPoint(900, 500))); // above what was mapped meanwhile
    m_peer->click();
    QTRY_VERIFY(!m_ended.empty());
    QVERIFY(isPicked(QPoint(900, 500)));
    QCOMPARE(m_peer->pressCount(later), 0);
}

void X11LoupeTest::hasAShadowWhileThereIsACompositor()
{
    const QPoint hotSpot(500, 500);
    const QPoint beside = hotSpot + QPoint(93, 0) * qApp->devicePixelRatio(); // the outline ends at 88
    const QColor unshaded = QColor(colourAt(beside));
    const auto isShaded = [&] {
        const QColor shown(m_peer->pixel(beside));
        return shown.value() < unshaded.value() && shown.value() > unshaded.value() / 2;
    };
    Compositor compositor;
    open(hotSpot);
    QCOMPARE(m_peer->pixel(beside), unshaded.rgb());
    QVERIFY(compositor.start(*m_peer));
    QTRY_VERIFY(isShaded());
    compositor.stop();
    QTRY_COMPARE(m_peer->pixel(beside), unshaded.rgb());
    QVERIFY(isShownAt(hotSpot));
}

void X11LoupeTest::arrangeScreens(std::initializer_list<const char *> arguments)
{
    QStringList words;
    for (const char *argument : arguments) {
        words.append(QString::fromLatin1(argument));
    }
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral("xrandr"), words);
    QVERIFY(process.waitForFinished());
}

void X11LoupeTest::givesPointerAndKeyboardBack_data()
{
    QTest::addColumn<QString>("ending");
    for (const char *ending : {"click", "right click", "Return", "Escape", "context", "screens", "connection"}) {
        QTest::newRow(ending) << QString::fromLatin1(ending);
    }
}

void X11LoupeTest::givesPointerAndKeyboardBack()
{
    QFETCH(QString, ending);
    open(QPoint(500, 500));
    QVERIFY(!isEverythingFree());
    if (ending == QStringLiteral("click")) {
        m_peer->click();
    } else if (ending == QStringLiteral("right click")) {
        m_peer->click(3);
    } else if (ending == QStringLiteral("context")) {
        m_context.reset();
    } else if (ending == QStringLiteral("connection")) {
        m_peer->killOwnerOfTopmost();
    } else if (ending == QStringLiteral("screens")) {
        arrangeScreens({"--setmonitor", "half", "960/300x1080/300+0+0", "screen"});
    } else {
        m_peer->key(ending == QStringLiteral("Return") ? kReturn : kEscape);
    }
    QTRY_VERIFY(isEverythingFree());
    QTRY_VERIFY(!isShownAt(QPoint(500, 500)));
    if (ending == QStringLiteral("context")) {
        QVERIFY(m_ended.empty());
        return;
    }
    QTRY_COMPARE(m_ended.size(), 1);
    QCOMPARE(m_ended.front().has_value(), ending == QStringLiteral("click") || ending == QStringLiteral("Return"));
    if (ending == QStringLiteral("screens")) {
        arrangeScreens({"--delmonitor", "half"});
    }
}

void X11LoupeTest::keepsItsPressesFromEverybodyElse()
{
    QSignalSpy outside(&m_platform->outsideActivity(), &OutsideActivity::pressedOutside);
    open(QPoint(500, 500));
    const int before = m_peer->pressCount(m_background);
    m_peer->button(true);
    m_peer->key(kReturn); // what is chosen is chosen
    m_peer->movePointer(QPoint(600, 600));
    QVERIFY(m_ended.empty()); // the second half of the click is the loupe's too
    m_peer->button(false);
    QTRY_COMPARE(m_ended.size(), 1);
    QVERIFY(isPicked(QPoint(500, 500)));
    m_peer->click();
    QTRY_COMPARE(outside.count(), 1); // the one after
    QCOMPARE(m_peer->pressCount(m_background), before + 1);
}

void X11LoupeTest::waitsForAGrabThatEnds()
{
    QVERIFY(m_peer->grabPointer());
    m_peer->movePointer(QPoint(500, 500));
    QVERIFY(m_platform->colourPicker().pick(
        m_context.get(), {.gathered = {}, .finished = [this](auto colour) { m_ended.push_back(colour); }}));
    QCoreApplication::processEvents();
    QVERIFY(!isShownAt(QPoint(500, 500)));
    m_peer->releasePointer();
    QTRY_VERIFY(isShownAt(QPoint(500, 500)));
}

void X11LoupeTest::givesUpWhereTheGrabStays_data()
{
    QTest::addColumn<bool>("ofPointer");
    QTest::addColumn<QString>("line");
    QTest::newRow("pointer") << true << QStringLiteral("No colour can be picked: another program holds the pointer");
    QTest::newRow("keyboard") << false << QStringLiteral("No colour can be picked: another program holds the keyboard");
}

void X11LoupeTest::givesUpWhereTheGrabStays()
{
    QFETCH(bool, ofPointer);
    QFETCH(QString, line);
    QVERIFY(ofPointer ? m_peer->grabPointer() : m_peer->grabKeyboard());
    QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
    QVERIFY(m_platform->colourPicker().pick(
        m_context.get(), {.gathered = {}, .finished = [this](auto colour) { m_ended.push_back(colour); }}));
    QTRY_COMPARE_WITH_TIMEOUT(m_ended.size(), 1, 20'000);
    QVERIFY(!m_ended.front());
    m_peer->releasePointer();
    m_peer->releaseKeyboard();
    QVERIFY(isEverythingFree());
}

void X11LoupeTest::keepsWhatWasGatheredWithoutTheKeyboard()
{
    const QPoint pointer(500, 500);
    QVERIFY(m_peer->grabKeyboard());
    open(pointer);
    QTest::ignoreMessage(QtWarningMsg, "No colour can be picked: another program holds the keyboard");
    m_peer->key(kShift, /*down=*/true);
    m_peer->click();
    m_peer->key(kShift, /*down=*/false);
    QTRY_COMPARE_WITH_TIMEOUT(m_ended.size(), 1, 20'000);
    QVERIFY(isPicked(pointer));
}

void X11LoupeTest::closesTheProgramsOwnMenus()
{
    QMenu menu;
    menu.addAction(QStringLiteral("Entry"));
    menu.popup(QPoint(100, 100));
    QTRY_VERIFY(menu.isVisible());
    open(QPoint(500, 500));
    QVERIFY(!menu.isVisible());
}

void X11LoupeTest::takesTheKeyboardWhileItsShortcutIsHeld()
{
    constexpr quint32 kC = 8;
    constexpr xcb_keycode_t kEscapeKey = 9;
    HotKeys &hotKeys = m_platform->hotKeys();
    hotKeys.set({{3, kC, Qt::ShiftModifier | Qt::MetaModifier, QStringLiteral("pickColor"), {}}});
    connect(&hotKeys, &HotKeys::pressed, m_context.get(), [this] {
        m_platform->colourPicker().pick(
            m_context.get(), {.gathered = {}, .finished = [this](auto colour) { m_ended.push_back(colour); }});
    });
    const QPoint pointer(500, 500);
    m_peer->movePointer(pointer);
    PeerKeyboard keys;
    for (std::size_t time = 1; time <= 2; ++time) {
        keys.hold(kC, Qt::ShiftModifier | Qt::MetaModifier);
        QTRY_VERIFY(isShownAt(pointer));
        keys.tap(kEscapeKey);
        QTRY_COMPARE(m_ended.size(), time);
        keys.release();
        QVERIFY(isEverythingFree());
    }
}

void X11LoupeTest::leavesTheLoupeToAnotherProcess()
{
    m_peer->ownSelection("_OSTRELLE_LOUPE");
    QVERIFY(!m_platform->colourPicker().pick(m_context.get(), {}));
    QVERIFY(isEverythingFree());
}

} // namespace ostrelle

using ostrelle::X11LoupeTest;
OSTRELLE_TEST(X11LoupeTest)

#include "X11LoupeTest.moc"
