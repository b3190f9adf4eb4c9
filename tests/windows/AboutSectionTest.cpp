#include "SettingsFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "windows/UpdateRow.h"

using namespace ostrelle;

namespace {

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

constexpr char kNewer[] = R"({"version": "1.5", "url": "https://get.example/1.5", "notes": "A calmer spring."})";

struct AboutStage : SettingsFixture
{
    AboutStage() { open(SettingsSection::About); }

    const UpdateRow &row() const { return *window().findChild<UpdateRow *>(); }
    bool offers(const char *name) const { return find<QAbstractButton>(latin(name)) != nullptr; }
};

} // namespace

class AboutSectionTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void checksAndOffersARelease();
    void skippingSaysThatNothingIsNewer();
    void tellsWhyACheckFailed();
    void showsThatAutomaticChecksAreOff();
    void turnsOnlyWhileItChecks();
};

void AboutSectionTest::checksAndOffersARelease()
{
    AboutStage stage;
    QCOMPARE(stage.row().accessibleName(), latin("Version 1.4"));
    QCOMPARE(stage.find<QWidget>(latin("Ostrelle"))->accessibleDescription(), latin("Version 1.4"));
    const int idle = stage.row().height();
    stage.button(latin("Check Now")).setFocus();
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.row().accessibleName(), latin("Checking…"));
    QVERIFY(!stage.button(latin("Check Now")).isEnabled());
    stage.updateServer.answer(QByteArray(kNewer));
    stage.settle();
    QCOMPARE(stage.row().accessibleName(), latin("Version 1.5 is available"));
    QCOMPARE(stage.row().accessibleDescription(), latin("A calmer spring."));
    QVERIFY(stage.row().height() > idle);
    QVERIFY(!stage.offers("Check Now"));
    QVERIFY(stage.button(latin("Download")).hasFocus());
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.platform.fileOpening().addresses, QList<QUrl>{QUrl(latin("https://get.example/1.5"))});
}

void AboutSectionTest::skippingSaysThatNothingIsNewer()
{
    AboutStage stage;
    stage.click(latin("Check Now"));
    stage.updateServer.answer(QByteArray(kNewer));
    stage.settle();
    stage.button(latin("Skip")).setFocus();
    stage.press(Qt::Key_Return);
    stage.settle();
    QCOMPARE(stage.settings.skippedUpdateVersion(), latin("1.5"));
    QCOMPARE(stage.row().accessibleName(), latin("You're up to date"));
    QVERIFY(stage.offers("Check Now") && !stage.offers("Skip") && !stage.offers("Download"));
    QVERIFY(stage.button(latin("Check Now")).hasFocus());
}

void AboutSectionTest::tellsWhyACheckFailed()
{
    AboutStage stage;
    stage.button(latin("Check Now")).setFocus();
    stage.press(Qt::Key_Return);
    stage.press(Qt::Key_Tab); // to what the answer leaves alone
    const QWidget *gone = stage.window().focusWidget();
    stage.updateServer.answer({.outcome = FeedOutcome::Answered, .status = 503, .body = {}, .message = {}});
    stage.settle();
    QCOMPARE(stage.row().accessibleName(), latin("Couldn't check for updates"));
    QCOMPARE(stage.row().accessibleDescription(), latin("The update server answered 503."));
    QVERIFY(stage.button(latin("Check Now")).isEnabled());
    QCOMPARE(stage.window().focusWidget(), gone);
}

void AboutSectionTest::showsThatAutomaticChecksAreOff()
{
    AboutStage stage;
    QVERIFY(stage.row().accessibleDescription().isEmpty());
    stage.click(latin("Check for updates automatically"));
    QCOMPARE(stage.row().accessibleDescription(), latin("Automatic checks are off."));
}

void AboutSectionTest::turnsOnlyWhileItChecks()
{
    AboutStage stage;
    QVERIFY(!stage.clock.pendingCount());
    stage.click(latin("Check Now"));
    QVERIFY(stage.clock.pendingCount() > 0);
    stage.click(latin("General")); // what is not seen does not turn
    QVERIFY(!stage.clock.pendingCount());
    stage.click(latin("About"));
    QVERIFY(stage.clock.pendingCount() > 0);
    stage.updateServer.answer(QByteArray(kNewer));
    stage.settle();
    QVERIFY(!stage.clock.pendingCount());
}

OSTRELLE_TEST(AboutSectionTest)
#include "AboutSectionTest.moc"
