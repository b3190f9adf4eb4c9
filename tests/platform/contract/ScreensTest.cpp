#include "platform/Screens.h"
#include "ContractDesktop.h"
#include "platform/PanelHost.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace ostrelle {

class ScreensTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void followsScreensThatComeAndGo()
    {
        const auto desktop = ContractDesktop::make();
        Screens &screens = desktop->screens();
        const QList<Screen> before = screens.all();
        QCOMPARE(before.count(), 1);
        QCOMPARE(screens.primary(), before.first());
        QWidget panel;
        desktop->panelHost().attach(panel);
        desktop->panelHost().place(before.first().name, QSizeF(300, 100));

        QSignalSpy changed(&screens, &Screens::changed);
        desktop->arrangeScreens({QStringLiteral("left"), QStringLiteral("right")});
        QTRY_VERIFY(screens.named(QStringLiteral("right")).has_value());
        QTRY_COMPARE(screens.all().count(), 2);
        QVERIFY(changed.count() >= 1);
        const QRectF right = screens.named(QStringLiteral("right"))->frame;
        const QRectF left = screens.named(QStringLiteral("left"))->frame;
        QVERIFY(!left.intersects(right));
        desktop->panelHost().place(QStringLiteral("right"), QSizeF(300, 100));
        QCOMPARE(panel.geometry().x() + panel.width() / 2.0, right.x() + right.width() / 2);

        // The screen that the panel sits on goes: the panel can be put on one that stays.
        desktop->arrangeScreens({QStringLiteral("left")});
        QTRY_VERIFY(!screens.named(QStringLiteral("right")).has_value());
        const Screen last = *screens.primary();
        desktop->panelHost().place(last.name, QSizeF(300, 100));
        QVERIFY(panel.isVisible());
        QCOMPARE(panel.geometry().x() + panel.width() / 2.0, last.frame.x() + last.frame.width() / 2);
    }
};

} // namespace ostrelle

using ostrelle::ScreensTest;
OSTRELLE_TEST(ScreensTest)

#include "ScreensTest.moc"
