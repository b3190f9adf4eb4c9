#include "foundation/FileDescriptor.h"
#include "media_client/HelperProcess.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <cstring>
#include <vector>

#include <fcntl.h>

using namespace ostrelle;

/// Attempts from inside a helper.
class SandboxTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void everyAttemptIsRefused_data();
    void everyAttemptIsRefused();
    void fontsStayReadable();

private:
    static QByteArray ask(const QString &probe, HelperCommand command, quint32 limit);
};

QByteArray SandboxTest::ask(const QString &probe, HelperCommand command, quint32 limit)
{
    HelperProcess helper(QCoreApplication::applicationDirPath() + u'/' + probe, HelperPriority::Usual);
    QByteArray payload;
    connect(&helper, &HelperProcess::answered, &helper,
            [&payload](const HelperAnswer &, const QByteArray &bytes) { payload = bytes; });
    const FileDescriptor file(::open("/proc/self/exe", O_RDONLY | O_CLOEXEC));
    HelperRequest request;
    request.command = command;
    request.side = 100;
    request.cpuSeconds = 5;
    request.outputLimit = limit;
    if (helper.ask(request, file.get()))
        (void)QTest::qWaitFor([&payload] { return !payload.isEmpty(); });
    return payload;
}

void SandboxTest::everyAttemptIsRefused_data()
{
    QTest::addColumn<QString>("probe");
    QTest::newRow("light") << QStringLiteral("sandbox-probe-light");
    QTest::newRow("extra") << QStringLiteral("sandbox-probe-extra");
}

void SandboxTest::everyAttemptIsRefused()
{
    QFETCH(QString, probe);
    QFile victim(QStringLiteral("/tmp/ostrelle-probe-victim"));
    QVERIFY(victim.open(QIODevice::WriteOnly));
    const QByteArray payload = ask(probe, HelperCommand::Thumbnail, 4096);
    std::vector<int> errors(std::size_t(payload.size()) / sizeof(int));
    std::memcpy(errors.data(), payload.constData(), errors.size() * sizeof(int));
    QCOMPARE(errors.size(), std::size_t(16));
    for (std::size_t attempt = 0; attempt < errors.size(); ++attempt)
        QVERIFY2(errors[attempt] == EPERM || errors[attempt] == EACCES,
                 qPrintable(QStringLiteral("attempt %1: error %2").arg(attempt).arg(errors[attempt])));
    QVERIFY(victim.remove());
}

void SandboxTest::fontsStayReadable()
{
    QCOMPARE(ask(QStringLiteral("sandbox-probe-extra"), HelperCommand::ToPng, 16), QByteArray("\1"));
}

OSTRELLE_TEST(SandboxTest)
#include "SandboxTest.moc"
