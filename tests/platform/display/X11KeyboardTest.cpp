#include "PeerClient.h"
#include "platform/OutsideActivity.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/Popups.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

/// Keyboard and presses between the panel and other programs' windows under a window manager.
class X11KeyboardTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void typesIntoThePanelAndGivesTheFocusBack();
    void givesTheFocusToTheTopmostWindowWhenItsOwnerIsGone();
    void losesTheKeyboardToAWindowThatIsActivated();
    void ignoresAGrabElsewhere();
    void countsPressesInItsMenusAndWindowsAsInside();

private:
    PanelHost &host() { return m_platform->panelHost(); }
    xcb_window_t window() const { return static_cast<xcb_window_t>(m_panel->internalWinId()); }
    xcb_window_t openPeer(const QByteArray &name, int x)
    {
        const xcb_window_t peer = m_peer->open(QRect(x, 600, 200, 100), PeerClient::Kind::Managed, name);
        m_peer->activate(peer);
        return peer;
    }
    void takeKeyboard()
    {
        host().takeKeyboard({});
        QTRY_VERIFY(host().hasKeyboard());
        QCOMPARE(m_peer->focus(), window());
    }

    std::unique_ptr<PeerClient> m_peer;
    std::unique_ptr<Platform> m_platform;
    std::unique_ptr<QWidget> m_panel;
    QLineEdit *m_field = nullptr;
};

void X11KeyboardTest::init()
{
    TestBase::init();
    m_peer = std::make_unique<PeerClient>();
    m_platform = Platform::create(QStringLiteral("x11"), QString());
    m_panel = std::make_unique<QWidget>();
    m_field = new QLineEdit(m_panel.get());
    m_field->setGeometry(400, 10, 100, 30);
    host().attach(*m_panel);
    host().place(m_platform->screens().primary()->name, QSizeF(680, 100));
    host().setInteractiveRect(QRectF(300, 0, 300, 100));
    QPainterPath outline;
    outline.addRect(300, 0, 300, 100);
    host().setOutline(outline);
    QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
}

void X11KeyboardTest::cleanup()
{
    m_panel.reset();
    m_platform.reset();
    m_peer.reset();
}

void X11KeyboardTest::typesIntoThePanelAndGivesTheFocusBack()
{
    QSignalSpy activated(&m_platform->outsideActivity(), &OutsideActivity::otherApplicationActivated);
    openPeer("one", 100);
    const xcb_window_t peer = openPeer("two", 500);
    QTRY_COMPARE(activated.count(), 2);
    m_field->setFocus();
    takeKeyboard();
    QTRY_VERIFY(m_field->hasFocus());
    m_peer->key('a');
    QTRY_COMPARE(m_field->text(), QStringLiteral("a"));

    host().releaseKeyboard();
    QTRY_VERIFY(!host().hasKeyboard());
    QCOMPARE(m_peer->focus(), peer);
    QTRY_COMPARE(m_peer->activeWindow(), peer);
    m_peer->key('b');
    QCOMPARE(activated.count(), 2); // a return is no activation

    // Again at once, and back again: the window that is remembered is still the other program's.
    takeKeyboard();
    host().releaseKeyboard();
    host().takeKeyboard({});
    host().releaseKeyboard();
    QTRY_COMPARE(m_peer->focus(), peer);
    QCOMPARE(m_field->text(), QStringLiteral("a"));
}

void X11KeyboardTest::givesTheFocusToTheTopmostWindowWhenItsOwnerIsGone()
{
    const xcb_window_t left = openPeer("left", 100);
    // A window that the window manager does not know, so that nobody looks after the focus when it dies.
    const xcb_window_t gone = m_peer->open(QRect(500, 600, 200, 100), PeerClient::Kind::OverrideRedirect);
    m_peer->setFocus(gone);
    takeKeyboard();
    m_peer->close(gone);
    QCOMPARE(m_peer->focus(), window());
    host().releaseKeyboard();
    QTRY_VERIFY(!host().hasKeyboard());
    QTRY_COMPARE(m_peer->focus(), left);
}

void X11KeyboardTest::losesTheKeyboardToAWindowThatIsActivated()
{
    const xcb_window_t peer = openPeer("peer", 100);
    takeKeyboard();
    QSignalSpy lost(&host(), &PanelHost::keyboardLost);
    m_peer->activate(openPeer("other", 500));
    QTRY_COMPARE(lost.count(), 1);
    host().releaseKeyboard(); // not held: takes nothing from anybody
    m_peer->activate(peer);
    QTRY_COMPARE(m_peer->focus(), peer);
}

void X11KeyboardTest::ignoresAGrabElsewhere()
{
    openPeer("peer", 100);
    takeKeyboard();
    QSignalSpy lost(&host(), &PanelHost::keyboardLost);
    QVERIFY(m_peer->grabKeyboard()); // as a held hot key does
    m_peer->releaseKeyboard();
    m_peer->key('x');
    m_field->setFocus();
    QTRY_COMPARE((m_peer->key('y'), m_field->text().contains(QLatin1Char('y'))), true);
    QVERIFY(host().hasKeyboard());
    QCOMPARE(lost.count(), 0);
}

void X11KeyboardTest::countsPressesInItsMenusAndWindowsAsInside()
{
    m_peer->open(QRect(1700, 800, 200, 200), PeerClient::Kind::OverrideRedirect);
    QSignalSpy outside(&m_platform->outsideActivity(), &OutsideActivity::pressedOutside);
    const auto clickAt = [this](const QPoint &native) {
        m_peer->movePointer(native);
        m_peer->click();
    };
    const double scale = m_panel->devicePixelRatioF();
    const QPoint panel = m_peer->frame(window()).topLeft();
    QPushButton button(m_panel.get());
    button.setGeometry(310, 40, 60, 30);
    button.show();
    QSignalSpy clicked(&button, &QPushButton::clicked);
    clickAt(panel + QPoint(int(320 * scale), int(50 * scale)));
    QTRY_COMPARE(clicked.count(), 1);

    QMenu menu;
    QSignalSpy triggered(menu.addAction(QStringLiteral("An action")), &QAction::triggered);
    m_platform->popups().openMenu(menu, *m_panel, QPointF(450, 90)); // reaches beyond the panel
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    const QRect menuFrame = m_peer->frame(static_cast<xcb_window_t>(menu.internalWinId()));
    m_peer->movePointer(menuFrame.center());
    QTRY_VERIFY(menu.activeAction());
    m_peer->click(); // closes the menu before the press is looked at
    QTRY_COMPARE(triggered.count(), 1);

    QPushButton settings; // an ordinary window of this program, in a frame of the window manager's
    QSignalSpy settingsClicked(&settings, &QPushButton::clicked);
    settings.setGeometry(200, 400, 200, 100);
    settings.show();
    QVERIFY(QTest::qWaitForWindowActive(&settings));
    clickAt(m_peer->frame(static_cast<xcb_window_t>(settings.winId())).center());
    QTRY_COMPARE(settingsClicked.count(), 1);

    clickAt(QPoint(1800, 900)); // the only press outside so far, and the last to be told
    QTRY_VERIFY(outside.count() > 0);
    QCOMPARE(outside.count(), 1);
    m_platform->popups().openMenu(menu, *m_panel, QPointF(450, 90));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    clickAt(QPoint(1800, 900)); // closes the menu, the toolkit sees the press too
    QTRY_COMPARE(outside.count(), 2);
    QTRY_VERIFY(!menu.isVisible());
}

} // namespace ostrelle

using ostrelle::X11KeyboardTest;
OSTRELLE_TEST(X11KeyboardTest)

#include "X11KeyboardTest.moc"
