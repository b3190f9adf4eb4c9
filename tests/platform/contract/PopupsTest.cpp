#include "platform/Popups.h"
#include "ContractDesktop.h"
#include "platform/PanelHost.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

class PopupsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void opensAMenuThatWorksByKeyboardOnAnUnfocusedPanel()
    {
        const auto desktop = ContractDesktop::make();
        QWidget panel;
        desktop->panelHost().attach(panel);
        desktop->panelHost().place(desktop->screens().primary()->name, QSizeF(300, 100));
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QSignalSpy gained(&desktop->panelHost(), &PanelHost::keyboardGained);

        QMenu menu;
        menu.addAction(QStringLiteral("First"));
        QSignalSpy second(menu.addAction(QStringLiteral("Second")), &QAction::triggered);
        desktop->popups().openMenu(menu, panel, QPointF(450, 20));
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        QCOMPARE(menu.y(), panel.y() + 20);

        desktop->pressKey(Qt::Key_Down);
        desktop->pressKey(Qt::Key_Down);
        desktop->pressKey(Qt::Key_Return);
        QTRY_COMPARE(second.count(), 1);
        QVERIFY(!menu.isVisible());
        QVERIFY(panel.isVisible());
        QCOMPARE(gained.count(), 0);
    }

    void leavesTheKeyboardStateAloneWhileAMenuIsOpen()
    {
        const auto desktop = ContractDesktop::make();
        QWidget panel;
        desktop->panelHost().attach(panel);
        desktop->panelHost().place(desktop->screens().primary()->name, QSizeF(300, 100));
        desktop->panelHost().takeKeyboard({});
        QTRY_VERIFY(desktop->panelHost().hasKeyboard());
        QSignalSpy lost(&desktop->panelHost(), &PanelHost::keyboardLost);

        QMenu menu;
        menu.addAction(QStringLiteral("Only"));
        desktop->popups().openMenu(menu, panel, QPointF(450, 20));
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        desktop->pressKey(Qt::Key_Escape);
        QTRY_VERIFY(!menu.isVisible());
        QVERIFY(desktop->panelHost().hasKeyboard());
        QCOMPARE(lost.count(), 0);
    }
};

} // namespace ostrelle

using ostrelle::PopupsTest;
OSTRELLE_TEST(PopupsTest)

#include "PopupsTest.moc"
