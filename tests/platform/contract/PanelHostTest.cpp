#include "platform/PanelHost.h"
#include "ContractDesktop.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace ostrelle {

/// What every panel host does.
class PanelHostTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_desktop = ContractDesktop::make();
        m_panel = std::make_unique<QWidget>();
        host().attach(*m_panel);
    }
    void cleanup()
    {
        m_panel.reset();
        m_desktop.reset();
    }
    void placesThePanelAtTheTopCentreWithTheSizeOnReturn();
    void neverChangesWidthOrPositionOnOneScreen();
    void leavesThePanelWhereItIsForAnUnknownScreen();
    void givesTheKeyboardOnlyOnRequestAndTakesItBack();
    void answersACaptureLaterAndOnlyToTheLiving();

private:
    PanelHost &host() { return m_desktop->panelHost(); }
    Screen screen() { return *m_desktop->screens().primary(); }
    QPointF topCentre() const
    {
        const QRectF frame = m_panel->geometry();
        return {frame.x() + frame.width() / 2, frame.y()};
    }

    std::unique_ptr<ContractDesktop> m_desktop;
    std::unique_ptr<QWidget> m_panel;
};

void PanelHostTest::placesThePanelAtTheTopCentreWithTheSizeOnReturn()
{
    host().place(screen().name, QSizeF(680, 380));
    QVERIFY(m_panel->isVisible());
    QVERIFY(m_panel->width() >= 680);
    QCOMPARE(m_panel->height(), 380);
    QCOMPARE(topCentre(), QPointF(screen().frame.center().x(), screen().frame.y()));
    QVERIFY(!host().hasKeyboard());
}

void PanelHostTest::neverChangesWidthOrPositionOnOneScreen()
{
    host().place(screen().name, QSizeF(150, 70));
    const QRect small = m_panel->geometry();
    for (const QSizeF size : {QSizeF(900, 700), QSizeF(300, 120.4), QSizeF(0, 0)}) {
        host().place(screen().name, size);
        QCOMPARE(m_panel->geometry().topLeft(), small.topLeft());
        QCOMPARE(m_panel->width(), small.width());
    }
    QVERIFY(m_panel->height() >= 1);
}

void PanelHostTest::leavesThePanelWhereItIsForAnUnknownScreen()
{
    host().place(screen().name, QSizeF(150, 70));
    const QRect before = m_panel->geometry();
    host().place(QStringLiteral("no such screen"), QSizeF(300, 300));
    QCOMPARE(m_panel->geometry(), before);
}

void PanelHostTest::givesTheKeyboardOnlyOnRequestAndTakesItBack()
{
    QSignalSpy gained(&host(), &PanelHost::keyboardGained);
    QSignalSpy lost(&host(), &PanelHost::keyboardLost);
    QSignalSpy refused(&host(), &PanelHost::keyboardRefused);
    host().place(screen().name, QSizeF(300, 100));

    host().takeKeyboard({});
    QCOMPARE(gained.count(), 0); // an answer never comes from inside the request
    QTRY_COMPARE(gained.count(), 1);
    QVERIFY(host().hasKeyboard());
    host().takeKeyboard({});
    host().releaseKeyboard();
    QTRY_COMPARE(lost.count(), 1);
    QVERIFY(!host().hasKeyboard());
    host().releaseKeyboard();

    host().takeKeyboard({});
    QTRY_COMPARE(gained.count(), 2);
    QCOMPARE(lost.count(), 1);
    QCOMPARE(refused.count(), 0);
}

void PanelHostTest::answersACaptureLaterAndOnlyToTheLiving()
{
    host().place(screen().name, QSizeF(300, 100));
    QList<BackdropCapture> answers;
    auto shortLived = std::make_unique<QObject>();
    int unwanted = 0;
    host().captureBackdrop(QRectF(100, 0, 300, 100), shortLived.get(), [&](const BackdropCapture &) { ++unwanted; });
    host().captureBackdrop(QRectF(100, 0, 300, 100), this, [&](const BackdropCapture &c) { answers.append(c); });
    shortLived.reset();
    QCOMPARE(answers.count(), 0);
    QTRY_COMPARE(answers.count(), 1);
    QCOMPARE(unwanted, 0);
    QVERIFY(answers.first().area.contains(QRectF(100, 0, 300, 100)));
    QCOMPARE(QSizeF(answers.first().image.size()) * 8, answers.first().area.size());
}

} // namespace ostrelle

using ostrelle::PanelHostTest;
OSTRELLE_TEST(PanelHostTest)

#include "PanelHostTest.moc"
