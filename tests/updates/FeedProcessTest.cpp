#include "updates/FeedProcess.h"

#include "foundation/FileDescriptor.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

/// A server that takes connections and never says a word.
class SilentServer
{
public:
    SilentServer()
    {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof place;
        if (::bind(m_listener.get(), reinterpret_cast<const sockaddr *>(&place), size) != 0 ||
            ::listen(m_listener.get(), 1) != 0 ||
            ::getsockname(m_listener.get(), reinterpret_cast<sockaddr *>(&place), &size) != 0)
            qFatal("no server on the loopback address");
        m_port = ntohs(place.sin_port);
    }

    QUrl address() const { return QUrl(QStringLiteral("https://127.0.0.1:%1/version.json").arg(m_port)); }
    /// Whether somebody has come and spoken.
    bool isAsked()
    {
        if (!m_client)
            m_client.reset(::accept4(m_listener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        m_isAsked = m_isAsked || (m_client && received() > 0);
        return m_isAsked;
    }
    /// Whether who came has gone.
    bool isLeft() { return received() == 0; }

private:
    ssize_t received()
    {
        char bytes[4096];
        return ::recv(m_client.get(), bytes, sizeof bytes, 0);
    }

    FileDescriptor m_listener{::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
    FileDescriptor m_client;
    int m_port = 0;
    bool m_isAsked = false;
};

struct Answers
{
    QList<FeedAnswer> list;

    FeedSource::Done note()
    {
        return [this](const FeedAnswer &answer) { list << answer; };
    }
};

FeedProcess::Program program()
{
    return FeedProcess::installed(QStringLiteral("1.0"));
}

} // namespace

class FeedProcessTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
            qunsetenv(name);
    }

    void givesUpAfterEightSeconds()
    {
        ManualTaskScheduler clock;
        SilentServer server;
        FeedProcess feed(clock, program());
        Answers answers;
        const RequestHandle request = feed.fetch(server.address(), answers.note());
        QTRY_VERIFY(server.isAsked());
        clock.advance(7999ms);
        QVERIFY(answers.list.isEmpty());
        clock.advance(1ms);
        QCOMPARE(answers.list.size(), 1);
        QCOMPARE(answers.list.first().message, QStringLiteral("The update server did not answer in time."));
        QTRY_VERIFY(server.isLeft());
        QCOMPARE(clock.pendingCount(), 0);
    }

    void aDroppedRequestEndsUnanswered()
    {
        ManualTaskScheduler clock;
        SilentServer server;
        FeedProcess feed(clock, program());
        Answers answers;
        RequestHandle request = feed.fetch(server.address(), answers.note());
        QTRY_VERIFY(server.isAsked());
        request.cancel();
        QTRY_VERIFY(server.isLeft());
        clock.advance(1h);
        QVERIFY(answers.list.isEmpty());
    }

    void survivesAProcessThatMisbehaves_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("is not there") << QByteArray();
        QTest::newRow("says nothing") << QByteArray("exit 0");
        QTest::newRow("ends in the middle") << QByteArray("printf 'Osuf' >&0");
        QTest::newRow("babbles") << QByteArray("while printf '%04000d' 0 >&0; do :; done");
        // Answered, 200, more than any feed.
        QTest::newRow("promises too much")
            << QByteArray("printf 'Osuf\\0\\0\\0\\0\\310\\0\\0\\0\\0\\0\\0\\020' >&0; exec cat");
    }

    void survivesAProcessThatMisbehaves()
    {
        QFETCH(const QByteArray, script);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("feed"));
        if (!script.isEmpty()) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("#!/bin/sh\n" + script + '\n');
            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        ManualTaskScheduler clock;
        FeedProcess feed(clock, {path, "test"});
        Answers answers;
        RequestHandle request;
        request = feed.fetch(QUrl(QStringLiteral("https://127.0.0.1/")), [&](const FeedAnswer &answer) {
            answers.list << answer;
            request.cancel();
        });
        QTRY_COMPARE(answers.list.size(), 1);
        QCOMPARE(answers.list.first().outcome, FeedOutcome::Failed);
        QCOMPARE(answers.list.first().message, QStringLiteral("The update check could not be carried out."));
    }
};

OSTRELLE_TEST(FeedProcessTest)
#include "FeedProcessTest.moc"
