#include "MediaFixture.h"

#include "media_client/MediaClient.h"
#include "support/ManualTaskScheduler.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ostrelle;
using namespace std::chrono_literals;

/// The client before helpers that do as each file says.
class MediaClientTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void spoiltAnswersCostOneFile_data();
    void spoiltAnswersCostOneFile();
    void hungHelperEndsAtTheDeadline();
    void otherHelperIsAskedForWhatOneDeclines();
    void latestRequestComesFirst();
    void mixedFilesKeepTheirHelpers();
    void wrongGuessesArePutRight();
    void inTheBackgroundOneProcessorIsLeftToOthers();
    void droppedRequestsAreNotAnswered();
    void manyFilesShareTwoHelpersThatEndWhenIdle();
    void onlyRegularFilesAreOpened_data();
    void onlyRegularFilesAreOpened();
    void missingHelperIsAFailure();

private:
    using Result = std::optional<PictureResult>;
    QString file(const QString &name, const QByteArray &content);
    MediaRequest ask(const QString &path, Result &result);
    bool settles(const Result &result);
    QByteArrayList starts() const;
    void expectLoss();

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<ManualTaskScheduler> m_scheduler;
    std::unique_ptr<MediaClient> m_client;
};

void MediaClientTest::init()
{
    TestBase::init();
    m_home = std::make_unique<TemporaryHome>();
    m_scheduler = std::make_unique<ManualTaskScheduler>();
    m_client =
        std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{helperFolder() + QStringLiteral("/stand-in"),
                                                                        m_home->path(QStringLiteral("t"))});
}

void MediaClientTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    m_home.reset();
    QCOMPARE(childCount(), 0);
}

QString MediaClientTest::file(const QString &name, const QByteArray &content)
{
    writeFile(m_home->path(name), content);
    return m_home->path(name);
}

MediaRequest MediaClientTest::ask(const QString &path, Result &result)
{
    return m_client->thumbnail(path, 8, MediaClient::CacheUse::None,
                               [&result](const PictureResult &answer) { result = answer; });
}

/// Lets everything happen that needs no time.
bool MediaClientTest::settles(const Result &result)
{
    return QTest::qWaitFor([&] {
        m_scheduler->advance(0s);
        return result.has_value();
    });
}

/// The helpers that have been started, "light" or "extra".
QByteArrayList MediaClientTest::starts() const
{
    QFile file(m_home->path(QStringLiteral("starts")));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().split('\n') : QByteArrayList();
}

void MediaClientTest::expectLoss()
{
    QTest::ignoreMessage(QtWarningMsg, "a media helper was lost on a file");
}

void MediaClientTest::spoiltAnswersCostOneFile_data()
{
    QTest::addColumn<QByteArray>("content");
    for (const char *content : {"die", "flood", "larger", "short", "garbage"})
        QTest::newRow(content) << QByteArray(content);
}

void MediaClientTest::spoiltAnswersCostOneFile()
{
    QFETCH(QByteArray, content);
    expectLoss();
    Result before;
    Result spoilt;
    Result after;
    const MediaRequest third = ask(file(QStringLiteral("after"), "fine"), after);
    const MediaRequest second = ask(file(QStringLiteral("spoilt"), content), spoilt);
    const MediaRequest first = ask(file(QStringLiteral("before"), "fine"), before);
    QVERIFY(settles(spoilt) && settles(before) && settles(after));
    QCOMPARE(std::get<MediaFailure>(*spoilt), MediaFailure::HelperLost);
    QVERIFY(!imageOf(*before).isNull());
    QVERIFY(!imageOf(*after).isNull());
}

void MediaClientTest::hungHelperEndsAtTheDeadline()
{
    expectLoss();
    Result hung;
    Result after;
    const MediaRequest request = ask(file(QStringLiteral("hung"), "hang"), hung);
    QVERIFY(QTest::qWaitFor([&] {
        m_scheduler->advance(0s);
        return childCount() == 1;
    }));
    m_scheduler->advance(9s);
    QVERIFY(!hung);
    m_scheduler->advance(2s);
    QVERIFY(hung);
    QCOMPARE(std::get<MediaFailure>(*hung), MediaFailure::TimedOut);
    QVERIFY(QTest::qWaitFor([] { return childCount() == 0; }));
    const MediaRequest next = ask(file(QStringLiteral("next"), "fine"), after);
    QVERIFY(settles(after));
    QVERIFY(!imageOf(*after).isNull());
}

void MediaClientTest::otherHelperIsAskedForWhatOneDeclines()
{
    Result result;
    const MediaRequest request = ask(file(QStringLiteral("film"), "extra"), result);
    QVERIFY(settles(result));
    QVERIFY(!imageOf(*result).isNull());
}

void MediaClientTest::latestRequestComesFirst()
{
    std::vector<int> order;
    std::vector<MediaRequest> requests;
    for (int i = 0; i < 12; ++i) {
        const QString path = file(QStringLiteral("file%1").arg(i), "fine");
        requests.push_back(m_client->thumbnail(path, 8, MediaClient::CacheUse::None,
                                               [&order, i](const PictureResult &) { order.push_back(i); }));
    }
    requests.front().raise();
    QVERIFY(QTest::qWaitFor([&] {
        m_scheduler->advance(0s);
        return order.size() == 12;
    }));
    // Four are on their way at a time, so that is how far they may change places.
    const auto place = [&order](int number) { return std::find(order.begin(), order.end(), number) - order.begin(); };
    QVERIFY(place(0) < 4);
    QVERIFY(place(11) < 5);
    QVERIFY(place(1) > 7);
}

void MediaClientTest::mixedFilesKeepTheirHelpers()
{
    constexpr int kFiles = 100;
    int pictures = 0;
    std::vector<MediaRequest> requests;
    for (int i = 0; i < kFiles; ++i) {
        const bool isDocument = i % 2 == 0;
        const QString path = file(QStringLiteral("%1.%2").arg(i).arg(QLatin1StringView(isDocument ? "pdf" : "jpg")),
                                  isDocument ? "extra" : "light");
        requests.push_back(
            m_client->thumbnail(path, 8, MediaClient::CacheUse::None, [&pictures](const PictureResult &result) {
                if (std::holds_alternative<MediaPicture>(result))
                    ++pictures;
            }));
    }
    QVERIFY(QTest::qWaitFor([&] {
        m_scheduler->advance(0s);
        return requests.size() == kFiles && m_client->pendingCount() == 0;
    }));
    QCOMPARE(pictures, kFiles);
    // At the start two light ones, of which one gives way; at the end each may give way for the last of the other kind.
    const QByteArrayList started = starts();
    QVERIFY2(started.size() <= 5, started.join(' ').constData());
}

void MediaClientTest::wrongGuessesArePutRight()
{
    const auto answerTo = [this](const char *name, const QByteArray &content) {
        Result result;
        const MediaRequest request = ask(file(QString::fromLatin1(name), content), result);
        return settles(result) ? *result : PictureResult(MediaFailure::TimedOut);
    };
    QVERIFY(!imageOf(answerTo("a.pdf", "extra")).isNull());
    const qsizetype before = starts().size();
    QVERIFY(!imageOf(answerTo("b.pdf", "extra")).isNull());
    QCOMPARE(std::get<MediaFailure>(answerTo("c.pdf", "unknown")), MediaFailure::Broken);
    QVERIFY(!imageOf(answerTo("d.pdf", "light")).isNull());
    QVERIFY(!imageOf(answerTo("e.pdf", "extra")).isNull());
    QCOMPARE(std::get<MediaFailure>(answerTo("f", "unknown")), MediaFailure::Broken);
    QCOMPARE(starts().size(), before);
}

void MediaClientTest::inTheBackgroundOneProcessorIsLeftToOthers()
{
    m_client = std::make_unique<MediaClient>(
        *m_scheduler,
        MediaClient::Places{helperFolder() + QStringLiteral("/stand-in"), m_home->path(QStringLiteral("t"))},
        MediaClient::Helpers{.priority = HelperPriority::Background});
    const int atOnce = std::clamp(QThread::idealThreadCount() - 1, 1, 2);
    std::vector<Result> results(3);
    std::vector<MediaRequest> requests;
    for (Result &result : results)
        requests.push_back(ask(file(QStringLiteral("hung%1").arg(requests.size()), "hang"), result));
    const auto startedCount = [this] {
        m_scheduler->advance(0s);
        return static_cast<int>(starts().size());
    };
    QTRY_COMPARE(startedCount(), atOnce);
    // A slow one does not hold the others up.
    m_scheduler->advance(1s);
    QTRY_COMPARE(startedCount(), 2);
    const QList<int> helpers = childProcesses();
    QCOMPARE(helpers.size(), 2);
    // Each takes turns with other programs by itself, not with this one.
    for (const int helper : helpers) {
        QCOMPARE(::getsid(helper), helper);
        QVERIFY(::getpriority(PRIO_PROCESS, static_cast<id_t>(helper)) > 0);
    }
}

void MediaClientTest::droppedRequestsAreNotAnswered()
{
    Result dropped;
    Result replaced;
    Result kept;
    {
        const MediaRequest request = ask(file(QStringLiteral("dropped"), "fine"), dropped);
        m_scheduler->advance(0s);
    }
    MediaRequest request = ask(file(QStringLiteral("replaced"), "fine"), replaced);
    request = ask(file(QStringLiteral("kept"), "fine"), kept);
    QVERIFY(settles(kept));
    QVERIFY(!dropped && !replaced);
    QCOMPARE(m_client->pendingCount(), 0);

    MediaRequest outliving = ask(file(QStringLiteral("outliving"), "hang"), dropped);
    m_scheduler->advance(0s);
    m_client.reset();
    QVERIFY(!outliving.isPending());
    outliving.cancel();
}

void MediaClientTest::manyFilesShareTwoHelpersThatEndWhenIdle()
{
    int answers = 0;
    int mostChildren = 0;
    std::vector<MediaRequest> requests;
    for (int i = 0; i < 60; ++i) {
        const QString path = file(QStringLiteral("file%1").arg(i), i % 3 == 0 ? "extra" : "fine");
        requests.push_back(m_client->thumbnail(path, 8, MediaClient::CacheUse::None,
                                               [&answers](const PictureResult &) { ++answers; }));
    }
    QVERIFY(QTest::qWaitFor([&] {
        m_scheduler->advance(0s);
        mostChildren = std::max(mostChildren, childCount());
        return answers == 60;
    }));
    // In each place one that was just told to end may still be there.
    QVERIFY2(mostChildren <= 4, qPrintable(QString::number(mostChildren)));
    m_scheduler->advance(5s);
    QVERIFY(QTest::qWaitFor([] { return childCount() == 0; }));
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void MediaClientTest::onlyRegularFilesAreOpened_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"missing", "folder", "link", "fifo", "/dev/null"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void MediaClientTest::onlyRegularFilesAreOpened()
{
    QFETCH(QString, name);
    const QString real = file(QStringLiteral("real"), "fine");
    QVERIFY(::mkdir(m_home->path(QStringLiteral("folder")).toUtf8().constData(), 0700) == 0);
    QVERIFY(::mkfifo(m_home->path(QStringLiteral("fifo")).toUtf8().constData(), 0600) == 0);
    QVERIFY(::symlink(real.toUtf8().constData(), m_home->path(QStringLiteral("link")).toUtf8().constData()) == 0);
    Result result;
    const MediaRequest request = ask(name.startsWith(u'/') ? name : m_home->path(name), result);
    QVERIFY(settles(result));
    QCOMPARE(std::get<MediaFailure>(*result), MediaFailure::NotAFile);
    QCOMPARE(childCount(), 0);
}

void MediaClientTest::missingHelperIsAFailure()
{
    QTest::ignoreMessage(QtWarningMsg, "a media helper could not be reached");
    m_client = std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{m_home->path(), m_home->path()});
    Result result;
    const MediaRequest request = ask(file(QStringLiteral("file"), "fine"), result);
    QVERIFY(settles(result));
    QCOMPARE(std::get<MediaFailure>(*result), MediaFailure::HelperMissing);
}

OSTRELLE_TEST(MediaClientTest)
#include "MediaClientTest.moc"
