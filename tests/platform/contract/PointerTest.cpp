#include "ContractDesktop.h"
#include "platform/DragSense.h"
#include "platform/OutsideActivity.h"
#include "platform/PanelHost.h"
#include "platform/PointerNear.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace ostrelle {

/// The contracts of the services that sense the pointer and other programs.
class PointerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_desktop = ContractDesktop::make();
        m_panel = std::make_unique<QWidget>();
        m_desktop->panelHost().attach(*m_panel);
        m_desktop->panelHost().place(m_desktop->screens().primary()->name, QSizeF(300, 100));
        m_desktop->panelHost().setInteractiveRect(QRectF(400, 0, 100, 30));
    }
    void cleanup()
    {
        m_panel.reset();
        m_desktop.reset();
    }

    void knowsWhetherThePointerIsWithinARectangle()
    {
        const QRectF rect(400, 0, 100, 30);
        m_desktop->movePointer(QPointF(402, 2));
        QCOMPARE(m_desktop->pointerNear().isWithin(rect), Answer::Yes);
        m_desktop->movePointer(QPointF(390, 2));
        QCOMPARE(m_desktop->pointerNear().isWithin(rect), Answer::No);
        QCOMPARE(m_desktop->pointerNear().isWithin(rect.adjusted(-20, -20, 20, 20)), Answer::Yes);
    }

    void tellsOfAnotherScreenOnlyWhileWatched()
    {
        m_desktop->arrangeScreens({QStringLiteral("one"), QStringLiteral("two")});
        QTRY_COMPARE(m_desktop->screens().all().count(), 2);
        PointerNear &pointer = m_desktop->pointerNear();
        QSignalSpy changed(&pointer, &PointerNear::screenChanged);
        m_desktop->movePointerToScreen(QStringLiteral("one"));
        QCOMPARE(pointer.screen(), QStringLiteral("one"));
        pointer.watchScreen(true);
        m_desktop->movePointerToScreen(QStringLiteral("two"));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toString(), QStringLiteral("two"));
        QCOMPARE(pointer.screen(), QStringLiteral("two"));

        pointer.watchScreen(false);
        m_desktop->movePointerToScreen(QStringLiteral("one"));
        m_desktop->clickElsewhere(); // comes after the motion
        QSignalSpy outside(&m_desktop->outsideActivity(), &OutsideActivity::pressedOutside);
        m_desktop->clickElsewhere();
        QTRY_VERIFY(outside.count() >= 1);
        QCOMPARE(changed.count(), 1);
        m_desktop->arrangeScreens({QStringLiteral("one")});
        QTRY_COMPARE(m_desktop->screens().all().count(), 1);
    }

    void tellsEachPressOutside()
    {
        QSignalSpy outside(&m_desktop->outsideActivity(), &OutsideActivity::pressedOutside);
        m_desktop->clickElsewhere();
        QTRY_COMPARE(outside.count(), 1);
        m_desktop->clickElsewhere();
        QTRY_COMPARE(outside.count(), 2);
    }

    void tellsOfAnotherApplicationButNotOfAReturn()
    {
        m_desktop->activate(QStringLiteral("editor"));
        QSignalSpy activated(&m_desktop->outsideActivity(), &OutsideActivity::otherApplicationActivated);
        m_desktop->activate(QStringLiteral("browser"));
        QTRY_COMPARE(activated.count(), 1);

        m_desktop->panelHost().takeKeyboard({});
        QTRY_VERIFY(m_desktop->panelHost().hasKeyboard());
        m_desktop->panelHost().releaseKeyboard();
        QTRY_VERIFY(!m_desktop->panelHost().hasKeyboard());
        m_desktop->activate(QStringLiteral("browser"));
        QCOMPARE(activated.count(), 1);
        m_desktop->activate(QStringLiteral("editor"));
        QTRY_COMPARE(activated.count(), 2);
    }

    void countsDragsAndKnowsTheButton()
    {
        DragSense &drag = m_desktop->dragSense();
        m_desktop->movePointer(QPointF(10, 90));
        QCOMPARE(drag.isButtonHeld(), Answer::No);
        const qint64 before = drag.changeCount();
        m_desktop->pressButton();
        QCOMPARE(drag.isButtonHeld(), Answer::Yes);
        QCOMPARE(drag.changeCount(), before); // a press alone is no drag
        QSignalSpy changed(&drag, &DragSense::changed);
        m_desktop->beginDrag();
        QTRY_COMPARE(changed.count(), 1);
        const qint64 first = drag.changeCount();
        QVERIFY(first != before);
        m_desktop->beginDrag(); // by the same source again
        QTRY_COMPARE(changed.count(), 2);
        QVERIFY(drag.changeCount() != first);
        QCOMPARE(drag.countAtPress(), before);
        m_desktop->releaseButton();
        QCOMPARE(drag.isButtonHeld(), Answer::No);
    }

private:
    std::unique_ptr<ContractDesktop> m_desktop;
    std::unique_ptr<QWidget> m_panel;
};

} // namespace ostrelle

using ostrelle::PointerTest;
OSTRELLE_TEST(PointerTest)

#include "PointerTest.moc"
