#include "PeerClient.h"
#include "platform/Platform.h"
#include "platform/PlatformStart.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace ostrelle {

/// Bars of other programs, and displays that are not there.
class X11DesktopTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void measuresTheTopBarOfEachMonitor();
    void saysInOneLineThatThereIsNoDisplay();
    void endsWithOneLineWhenTheDisplayIsLost();
};

void X11DesktopTest::measuresTheTopBarOfEachMonitor()
{
    PeerClient peer;
    const auto platform = Platform::create(QStringLiteral("x11"), QString());
    const auto xrandr = [](const QStringList &arguments) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(QStringLiteral("xrandr"), arguments);
        return process.waitForFinished() && process.exitCode() == 0;
    };
    QVERIFY(xrandr({QStringLiteral("--setmonitor"), QStringLiteral("L"), QStringLiteral("960/250x1080/300+0+0"),
                    QStringLiteral("screen")}));
    QVERIFY(xrandr({QStringLiteral("--setmonitor"), QStringLiteral("R"), QStringLiteral("960/250x1080/300+960+0"),
                    QStringLiteral("none")}));
    const auto barOn = [&](const QString &name) {
        const auto screen = platform->screens().named(name);
        return screen ? screen->topBarHeight * screen->scale : -1;
    };
    QTRY_COMPARE(barOn(QStringLiteral("R")), 0.0);
    const xcb_window_t bar = peer.openTopBar(36, 0, 959);
    QTRY_COMPARE(barOn(QStringLiteral("L")), 36.0);
    QCOMPARE(barOn(QStringLiteral("R")), 0.0);
    peer.close(bar);
    QTRY_COMPARE(barOn(QStringLiteral("L")), 0.0);

    // Where the desktop tells the work area of each monitor, that counts.
    peer.setWords(peer.root(), "_GTK_WORKAREAS_D0", {0, 0, 960, 1080, 960, 27, 960, 1053});
    peer.openTopBar(12, 0, 1919);
    QTRY_COMPARE(barOn(QStringLiteral("R")), 27.0);
    QCOMPARE(barOn(QStringLiteral("L")), 0.0);
    peer.remove(peer.root(), "_GTK_WORKAREAS_D0");
    QTRY_COMPARE(barOn(QStringLiteral("L")), 12.0);
    QVERIFY(xrandr({QStringLiteral("--delmonitor"), QStringLiteral("L")}));
    QVERIFY(xrandr({QStringLiteral("--delmonitor"), QStringLiteral("R")}));
}

void X11DesktopTest::saysInOneLineThatThereIsNoDisplay()
{
    const QByteArray display = qgetenv("DISPLAY");
    QString problem;
    qputenv("DISPLAY", ":4711");
    const auto nowhere = PlatformStart::prepare(&problem);
    qputenv("DISPLAY", display);
    QVERIFY(!nowhere);
    QVERIFY(problem.startsWith(QStringLiteral("No display: ")) && !problem.contains(QLatin1Char('\n')));
    QCOMPARE(PlatformStart::prepare(&problem), QStringLiteral("x11"));
}

void X11DesktopTest::endsWithOneLineWhenTheDisplayIsLost()
{
    QProcess server;
    server.setProgram(QStringLiteral("Xvfb"));
    server.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-noreset"),
                         QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    server.start();
    QVERIFY(QTest::qWaitFor([&server] { return server.canReadLine(); }, 30'000));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), QLatin1Char(':') + QString::fromLatin1(server.readLine()).trimmed());
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--until-display-lost")});
    QVERIFY(QTest::qWaitFor([&program] { return program.canReadLine(); }, 30'000));
    QCOMPARE(program.readLine(), QByteArray("ready\n"));
    server.kill();
    QVERIFY(program.waitForFinished());
    server.waitForFinished();
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 1);
    QCOMPARE(program.readAllStandardOutput(), QByteArray("flushed\n"));
    QCOMPARE(program.readAllStandardError(), QByteArray("Display connection lost.\n"));
}

} // namespace ostrelle

using ostrelle::X11DesktopTest;
OSTRELLE_TEST(X11DesktopTest)

#include "X11DesktopTest.moc"
