#include "shortcuts/NotchShortcutActions.h"
#include "NotchFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace ostrelle;

class NotchShortcutActionsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void opensWithTheKeyboardAndCloses()
    {
        NotchFixture notch;
        notch.platform.screens().arrange({FakeScreens::make(QStringLiteral("only"), QRectF(0, 0, 1920, 1080))});
        notch.controller.start(notch.panel);
        FakePanelHost &host = notch.platform.panelHost();
        QStringList seen; // by the sampler: what the notch shows when it starts
        bool isSampling = false;
        const auto sample = [&] {
            seen << (notch.viewModel.selection() ? rawValue(*notch.viewModel.selection()) : QString());
            isSampling = true;
        };
        NotchShortcutActions actions(notch.controller, {.isSampling = [&] { return isSampling; }, .sample = sample});

        actions.toggleNotch({QStringLiteral("first")});
        QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
        QVERIFY(!notch.viewModel.selection() && !notch.viewModel.openedByHover());
        QTRY_VERIFY(host.hasKeyboard());
        QCOMPARE(host.lastToken(), QStringLiteral("first"));
        actions.toggleNotch({});
        QVERIFY(notch.viewModel.phase() != Phase::Expanded);
        QTRY_VERIFY(!host.hasKeyboard());

        actions.openClipboard({QStringLiteral("second")});
        QCOMPARE(notch.viewModel.selection(), KestroModule::Clipboard);
        QCOMPARE(host.lastToken(), QStringLiteral("second"));
        actions.openClipboard({}); // open already: stays
        QCOMPARE(notch.viewModel.phase(), Phase::Expanded);

        actions.pickColor({QStringLiteral("third")});
        QCOMPARE(notch.viewModel.selection(), KestroModule::Color);
        QCOMPARE(host.lastToken(), QStringLiteral("third"));
        QCOMPARE(seen, QStringList(QStringLiteral("color")));
        actions.pickColor({}); // the loupe has the keyboard now
        actions.openClipboard({});
        actions.toggleNotch({});
        QCOMPARE(notch.viewModel.selection(), KestroModule::Color);
        QCOMPARE(seen.size(), 1);
        isSampling = false;
        actions.toggleNotch({});
        QVERIFY(notch.viewModel.phase() != Phase::Expanded);
    }
};

OSTRELLE_TEST(NotchShortcutActionsTest)

#include "NotchShortcutActionsTest.moc"
