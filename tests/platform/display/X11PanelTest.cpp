#include "Compositor.h"
#include "PeerClient.h"
#include "Waiting.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QMouseEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace ostrelle {

/// The panel's window, red where it is painted.
class RedPanel final : public QWidget
{
public:
    QPainterPath outline;
    QList<QPointF> presses;

    void replaceNativeWindow()
    {
        destroy();
        create();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillPath(outline, Qt::red);
    }
    void mousePressEvent(QMouseEvent *event) override { presses.append(event->position()); }
};

namespace {

/// Cells of random colours, never the panel's.
QImage mosaic(const QSize &size, int cell)
{
    QRandomGenerator random(7);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    for (int y = 0; y < size.height(); y += cell) {
        for (int x = 0; x < size.width(); x += cell) {
            painter.fillRect(x, y, cell, cell,
                             QColor(random.bounded(100), 50 + random.bounded(200), random.bounded(256)));
        }
    }
    return image;
}

} // namespace

/// The panel's window among other windows, on a server with a window manager, at any scale.
class X11PanelTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void passesClicksOutsideTheInteractiveRectToTheWindowBelow();
    void isShapedToItsOutlineWithoutACompositorOnly();
    void asksForBlurOfItsOutlineWhileTheCompositorOffersIt();
    void preparesANewNativeWindowLikeTheFirst();
    void tellsOtherProgramsThatItHasGrown();
    void givesWayToDialogsOnly();
    void capturesWhatIsBehindWithoutThePanel_data();
    void capturesWhatIsBehindWithoutThePanel();

private:
    PanelHost &host() { return m_platform->panelHost(); }
    xcb_window_t window() const { return static_cast<xcb_window_t>(m_panel->internalWinId()); }
    QPoint native(const QPointF &panelPosition)
    {
        return m_peer->frame(window()).topLeft() + (panelPosition * m_panel->devicePixelRatioF()).toPoint();
    }
    void clickAt(const QPointF &panelPosition)
    {
        m_peer->movePointer(native(panelPosition));
        m_peer->click();
    }
    void setOutline(const QRectF &rect);
    BackdropCapture capture(const QRectF &area);

    std::unique_ptr<PeerClient> m_peer;
    std::unique_ptr<Platform> m_platform;
    std::unique_ptr<RedPanel> m_panel;
};

void X11PanelTest::init()
{
    TestBase::init();
    m_peer = std::make_unique<PeerClient>();
    m_platform = Platform::create(QStringLiteral("x11"), QString());
    m_panel = std::make_unique<RedPanel>();
    host().attach(*m_panel);
    host().place(m_platform->screens().primary()->name, QSizeF(680, 380));
    QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
}

void X11PanelTest::cleanup()
{
    m_panel.reset();
    m_platform.reset();
    m_peer.reset();
}

void X11PanelTest::setOutline(const QRectF &rect)
{
    m_panel->outline.clear();
    m_panel->outline.addRect(rect);
    host().setOutline(m_panel->outline);
    m_panel->repaint();
}

BackdropCapture X11PanelTest::capture(const QRectF &area)
{
    std::optional<BackdropCapture> answer;
    host().captureBackdrop(area, this, [&answer](const BackdropCapture &c) { answer = c; });
    waitUntil("a capture is answered", [&answer] { return answer.has_value(); });
    return answer.value_or(BackdropCapture());
}

void X11PanelTest::passesClicksOutsideTheInteractiveRectToTheWindowBelow()
{
    const xcb_window_t below = m_peer->open(QRect(0, 0, 1920, 600), PeerClient::Kind::OverrideRedirect);
    host().raise();
    setOutline(QRectF(300, 0, 300, 200));
    host().setInteractiveRect(QRectF(400, 0, 100, 40));

    clickAt(QPointF(402, 2));
    QTRY_COMPARE(m_panel->presses.count(), 1);
    clickAt(QPointF(498, 38));
    QTRY_COMPARE(m_panel->presses.count(), 2);
    QVERIFY((m_panel->presses.last() - QPointF(498, 38)).manhattanLength() < 2);
    QCOMPARE(m_peer->pressCount(below), 0);
    int passed = 0;
    for (const QPointF outside : {QPointF(398, 20), QPointF(502, 20), QPointF(450, 42), QPointF(320, 150)}) {
        clickAt(outside);
        ++passed;
        QTRY_COMPARE(m_peer->pressCount(below), passed);
    }
    host().setInteractiveRect(QRectF());
    QTRY_COMPARE((clickAt(QPointF(450, 20)), m_peer->pressCount(below) > passed), true);

    host().place(m_platform->screens().primary()->name, QSizeF(900, 700)); // a resize keeps the region
    setOutline(QRectF(100, 0, 700, 500));
    host().setInteractiveRect(QRectF(100, 0, 700, 500));
    m_panel->presses.clear();
    clickAt(QPointF(110, 490));
    QTRY_COMPARE(m_panel->presses.count(), 1);
}

void X11PanelTest::isShapedToItsOutlineWithoutACompositorOnly()
{
    const double scale = m_panel->devicePixelRatioF();
    setOutline(QRectF(400, 0, 100, 40));
    const QRect shape(QPoint(int(400 * scale), 0), (QSizeF(100, 40) * scale).toSize());
    QCOMPARE(host().glass(), PanelHost::Glass::None);
    QTRY_COMPARE(m_peer->boundingExtents(window()), shape);

    QSignalSpy changed(&host(), &PanelHost::glassChanged);
    Compositor compositor;
    QVERIFY(compositor.start(*m_peer));
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(host().glass(), PanelHost::Glass::Snapshot);
    QTRY_COMPARE(m_peer->boundingExtents(window()).size(), (QSizeF(m_panel->size()) * scale).toSize());

    compositor.stop();
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(!host().hasCompositor());
    QTRY_COMPARE(m_peer->boundingExtents(window()), shape);
    QVERIFY(compositor.start(*m_peer)); // restarted
    QTRY_COMPARE(changed.count(), 3);
    QVERIFY(host().hasCompositor());
}

void X11PanelTest::asksForBlurOfItsOutlineWhileTheCompositorOffersIt()
{
    constexpr char kBlur[] = "_KDE_NET_WM_BLUR_BEHIND_REGION";
    m_peer->ownSelection("_NET_WM_CM_S0");
    setOutline(QRectF(400, 0, 100, 40));
    QTRY_COMPARE(host().glass(), PanelHost::Glass::Snapshot);
    QVERIFY(!m_peer->hasProperty(window(), kBlur));
    m_peer->setWords(m_peer->root(), kBlur, {0}); // what such a compositor marks the root window with
    QTRY_COMPARE(host().glass(), PanelHost::Glass::Compositor);
    QTRY_VERIFY(m_peer->hasProperty(window(), kBlur));
    host().setOutline(QPainterPath()); // an empty list would blur the whole window
    QTRY_VERIFY(!m_peer->hasProperty(window(), kBlur));
    m_peer->remove(m_peer->root(), kBlur);
    QTRY_COMPARE(host().glass(), PanelHost::Glass::Snapshot);
}

void X11PanelTest::preparesANewNativeWindowLikeTheFirst()
{
    QCOMPARE(m_peer->propertyName(window(), "_NET_WM_WINDOW_TYPE"), QByteArray("_NET_WM_WINDOW_TYPE_DOCK"));
    setOutline(QRectF(400, 0, 100, 40));
    const QRect shape = m_peer->boundingExtents(window());
    const xcb_window_t first = window();
    m_panel->hide();
    m_panel->replaceNativeWindow();
    m_panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_panel.get()));
    QVERIFY(window() != first);
    QCOMPARE(m_peer->propertyName(window(), "_NET_WM_WINDOW_TYPE"), QByteArray("_NET_WM_WINDOW_TYPE_DOCK"));
    QCOMPARE(m_peer->boundingExtents(window()), shape);
}

void X11PanelTest::tellsOtherProgramsThatItHasGrown()
{
    m_peer->ownSelection("_NET_WM_CM_S0");
    QTRY_COMPARE(host().glass(), PanelHost::Glass::Snapshot);
    m_peer->watchShape(window());
    host().place(m_platform->screens().primary()->name, QSizeF(680, 400));
    QTRY_COMPARE(m_peer->toldHeight(), int(400 * m_panel->devicePixelRatioF()));
}

void X11PanelTest::givesWayToDialogsOnly()
{
    const QRect place(100, 100, 300, 200);
    const xcb_window_t editor = m_peer->open(place, PeerClient::Kind::Managed, "editor");
    const xcb_window_t chooser = m_peer->open(place, PeerClient::Kind::Dialog, "chooser");
    const auto activate = [&](xcb_window_t application) {
        m_peer->activate(application);
        return m_peer->isAbove(window(), application);
    };
    QVERIFY(activate(editor) && activate(chooser));

    host().setGivingWay(true);
    QTRY_VERIFY(activate(editor));
    QTRY_VERIFY(!activate(chooser));
    // What the chooser asks leaves the panel below the chooser.
    const xcb_window_t question = m_peer->open(place, PeerClient::Kind::Dialog, "chooser");
    QTRY_VERIFY(!activate(question));
    QVERIFY(!m_peer->isAbove(window(), chooser));
    QTRY_VERIFY(activate(editor));
    QTRY_VERIFY(!activate(chooser));

    host().setGivingWay(false);
    m_panel->repaint(); // without a loop that rests, the toolkit sends nothing before
    QTRY_VERIFY(m_peer->isAbove(window(), chooser));
    QVERIFY(activate(editor) && activate(chooser));
}

void X11PanelTest::capturesWhatIsBehindWithoutThePanel_data()
{
    QTest::addColumn<bool>("withCompositor");
    QTest::newRow("screen") << false;
    QTest::newRow("windows below") << true;
}

void X11PanelTest::capturesWhatIsBehindWithoutThePanel()
{
    QFETCH(const bool, withCompositor);
    Compositor compositor;
    if (withCompositor) {
        QVERIFY(compositor.start(*m_peer));
        QTRY_VERIFY(host().hasCompositor());
    }
    const double cell = 8 * m_panel->devicePixelRatioF();
    const QPoint origin = native(QPointF(0, 0));
    const xcb_window_t below = m_peer->open(QRect(origin, QSize(1200, 800)), PeerClient::Kind::OverrideRedirect);
    const QImage picture = mosaic(QSize(1200, 800), static_cast<int>(cell));
    m_peer->paint(below, picture);
    host().raise();
    setOutline(QRectF(160, 0, 320, 80));
    QTRY_COMPARE(m_peer->pixel(native(QPointF(300, 40))), qRgb(255, 0, 0)); // the panel really is in the way

    const QRectF area(80, 0, 480, 160);
    BackdropCapture behind = capture(area);
    QTRY_VERIFY(!behind.image.isNull() || (behind = capture(area), false)); // the compositor may just be starting
    QCOMPARE(behind.area, area);
    QCOMPARE(behind.image.size(), QSize(60, 20));
    const auto expected = [&](int column, int row) {
        return picture.pixel(int((column + 10.5) * cell), int((row + 0.5) * cell));
    };
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 60; ++column) {
            const bool isHidden = column >= 10 && column < 50 && row < 10;
            // Without a compositor, what the panel hides is taken from just below it.
            const QRgb wanted = isHidden && !withCompositor ? expected(column, 10) : expected(column, row);
            const QRgb seen = behind.image.pixel(column, row);
            QVERIFY2(seen == wanted, qPrintable(QStringLiteral("column %1, row %2: %3 instead of %4")
                                                    .arg(column)
                                                    .arg(row)
                                                    .arg(QColor(seen).name(), QColor(wanted).name())));
        }
    }
}

} // namespace ostrelle

using ostrelle::X11PanelTest;
OSTRELLE_TEST(X11PanelTest)

#include "X11PanelTest.moc"
