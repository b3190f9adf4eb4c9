#include "OtherProgram.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11ClipboardPort.h"
#include "platform/x11/X11Frontmost.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>
#include <QWidget>

namespace ostrelle {

class FrontmostTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        // A window that is there before the window manager is managed later, but not made active.
        OtherProgram first = windowOf(QStringLiteral("First"), QStringLiteral("there is a window manager"));
        QVERIFY(first.says("ready"));
    }

    void keepsTheLastOtherApplication()
    {
        OtherProgram terminal(QStringLiteral("xterm"), {QStringLiteral("-e"), QStringLiteral("cat")});
        QTRY_VERIFY_WITH_TIMEOUT(isFrontmost(QStringLiteral("XTerm")), 20'000);
        QVERIFY(isFrontmost(QStringLiteral("xterm"))); // the program

        QWidget own;
        own.resize(200, 100);
        own.show();
        own.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&own));
        OtherProgram second = windowOf(QStringLiteral("Second"), QStringLiteral("from the second"));
        QTRY_VERIFY_WITH_TIMEOUT(isFrontmost(QStringLiteral("Second")), 20'000);
        own.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&own));
        QVERIFY(isFrontmost(QStringLiteral("Second")));
        QCOMPARE(m_frontmost.application()->name, QStringLiteral("Second"));
    }

    void isTheOneOfTheMomentOfTheCopy_data()
    {
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<QString>("identifier");
        QTest::newRow("1Password") << QStringLiteral("1Password") << QStringLiteral("com.1password.1password");
        QTest::newRow("Bitwarden") << QStringLiteral("Bitwarden") << QStringLiteral("com.bitwarden.desktop");
        QTest::newRow("keyring") << QStringLiteral("org.gnome.seahorse.Application")
                                 << QStringLiteral("com.apple.keychainaccess");
    }
    void isTheOneOfTheMomentOfTheCopy()
    {
        QFETCH(QString, windowClass);
        QFETCH(QString, identifier);
        X11ClipboardPort port(*m_connection, m_frontmost, m_scheduler, QString());
        const qint64 before = port.changeCount();
        // It copies in the instant in which its window becomes active, and another window follows at once.
        OtherProgram vault = windowOf(windowClass, QStringLiteral("a secret"));
        QTRY_COMPARE_WITH_TIMEOUT(port.changeCount(), before + 1, 20'000);
        OtherProgram terminal(QStringLiteral("xterm"), {QStringLiteral("-e"), QStringLiteral("cat")});
        QTRY_VERIFY_WITH_TIMEOUT(isFrontmost(QStringLiteral("XTerm")), 20'000);
        std::optional<std::optional<ClipboardSnapshot>> answer;
        port.snapshot(this, [&answer](const auto &snapshot) { answer = snapshot; });
        QTRY_VERIFY_WITH_TIMEOUT(answer.has_value(), 20'000);
        QVERIFY(answer->has_value());
        QVERIFY((*answer)->frontmost.has_value());
        const QStringList identifiers = (*answer)->frontmost->identifiers;
        QVERIFY2(identifiers.contains(identifier), qPrintable(identifiers.join(u' ')));
    }

private:
    static OtherProgram windowOf(const QString &windowClass, const QString &text)
    {
        return OtherProgram(QStringLiteral("selection-owner"), {QStringLiteral("serve"), QStringLiteral("--class"),
                                                                windowClass, QStringLiteral("--text"), text});
    }
    bool isFrontmost(const QString &identifier) const
    {
        const std::optional<Application> application = m_frontmost.application();
        return application && application->identifiers.contains(identifier);
    }

    std::unique_ptr<WatchConnection> m_connection = WatchConnection::open();
    SystemTaskScheduler m_scheduler;
    X11Frontmost m_frontmost{*m_connection, m_scheduler};
};

} // namespace ostrelle

using ostrelle::FrontmostTest;
OSTRELLE_TEST(FrontmostTest)

#include "FrontmostTest.moc"
