#include "updates/UpdateService.h"

#include "core/SettingsStore.h"
#include "foundation/DefaultsDatabase.h"
#include "records/SettingKeys.h"
#include "support/FakeFeedSource.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "updates/UpdateStatus.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;
using namespace ostrelle::updateStates;
using namespace std::chrono_literals;

namespace {

/// JSON with single quotes for double ones.
QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}

const auto kHome = QStringLiteral("https://home.example/");
const auto kNewer = json("{'version': '1.5', 'url': 'https://get.example/1.5', 'notes': 'Faster.'}");

struct Updates
{
    QTemporaryDir folder;
    DefaultsDatabase database{folder.filePath(QStringLiteral("defaults.json"))};
    SettingsStore settings{database};
    ManualTaskScheduler clock;
    FakeFeedSource server;
    UpdateService service;

    explicit Updates(const char *version = "1.4.0", const char *feed = "https://feed.example/version.json?old=1")
        : service(settings, clock, server, {QUrl(QString::fromLatin1(feed)), QUrl(kHome), QString::fromLatin1(version)})
    {
    }

    UpdateState check(UpdateService::Check kind, const QByteArray &body)
    {
        service.check(kind);
        server.answer(body);
        return service.state();
    }
    qsizetype requests() const { return server.addresses.size(); }
};

Available available(const char *version, const char *url, const char *notes = "")
{
    return {{QString::fromLatin1(version), QUrl(QString::fromLatin1(url)), QString::fromLatin1(notes)}};
}

} // namespace

class UpdateServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void ordersVersions()
    {
        // The versions of a line are equal, and newer than those of the lines before.
        const QList<QStringList> lines = {
            {QStringLiteral("beta"), QStringLiteral("-1"), QStringLiteral("vv"),
             QStringLiteral("99999999999999999999")},
            {QString(), QStringLiteral("0"), QStringLiteral(" v0.0 ")},
            {QStringLiteral("1.3-beta")},
            {QStringLiteral("1.3-beta.1")},
            {QStringLiteral("1.2.x")},
            {QStringLiteral("1.2"), QStringLiteral("1.2.0"), QStringLiteral("V1..2\t"), QStringLiteral(".1.02.")},
            {QStringLiteral("1.9")},
            {QStringLiteral("1.10")},
            {QStringLiteral("2"), QStringLiteral("v2.0")},
        };
        for (qsizetype a = 0; a < lines.size(); ++a) {
            for (qsizetype b = 0; b < lines.size(); ++b) {
                const int wanted = a < b ? -1 : a > b ? 1 : 0;
                for (const QString &left : lines.at(a)) {
                    for (const QString &right : lines.at(b))
                        QVERIFY2(UpdateService::compare(left, right) == wanted,
                                 qPrintable(left + QStringLiteral(" and ") + right));
                }
            }
        }
    }

    void readsTheFeed_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<UpdateState>("wanted");
        const auto row = [](const char *name, const char *body, UpdateState wanted) {
            QTest::newRow(name) << json(body) << std::move(wanted);
        };
        const UpdateState bad = Failed{QStringLiteral("The update server sent something unreadable.")};
        row("newer", kNewer, available("1.5", "https://get.example/1.5", "Faster."));
        row("newer by a v and in lines", "{'version': '\\n v1.4.1\\r\\n', 'url': 'https://a.example/', 'more': [1]}",
            available("v1.4.1", "https://a.example/"));
        row("equal", "{'version': '1.4'}", Current());
        row("older", "{'version': '1.3.9', 'url': 'https://a.example/'}", Current());
        row("without an address", "{'version': '2', 'url': null, 'notes': null}",
            available("2", "https://home.example/"));
        row("an address that is none", "{'version': '2', 'url': 'https://[nowhere'}",
            available("2", "https://home.example/"));
        row("an address without a host", "{'version': '2', 'url': 'https:///file'}",
            available("2", "https://home.example/"));
        row("http", "{'version': '2', 'url': 'http://a.example/'}", bad);
        row("no scheme", "{'version': '2', 'url': 'a.example'}", bad);
        row("http of an older one", "{'version': '1', 'url': 'http://a.example/'}", bad);
        row("empty version", "{'version': ' \\n'}", bad);
        row("no version", "{'url': 'https://a.example/'}",
            Failed{QStringLiteral("The update feed has no \"version\".")});
        row("a number", "{'version': 2}", Failed{QStringLiteral("The update feed's \"version\" is not a text.")});
        row("notes in a list", "{'version': '2', 'notes': []}",
            Failed{QStringLiteral("The update feed's \"notes\" is not a text.")});
        row("a list", "['2']", Failed{QStringLiteral("The update feed is not a JSON object.")});
        row("half of it", "{'version': '2",
            Failed{QStringLiteral("The update feed is not JSON: unterminated string.")});
    }

    void readsTheFeed()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const UpdateState, wanted);
        Updates updates;
        QCOMPARE(updates.check(UpdateService::Check::Automatic, body), wanted);
        QCOMPARE(updates.service.lastCheck().has_value(), !std::holds_alternative<Failed>(wanted));
    }

    void saysWhatFailedAndKeepsTheTimeOfTheLastSuccess()
    {
        Updates updates;
        updates.check(UpdateService::Check::Manual, kNewer);
        const auto last = updates.service.lastCheck();
        const QList<std::pair<FeedAnswer, QString>> failures = {
            {{.outcome = FeedOutcome::Answered, .status = 503, .body = kNewer, .message = {}},
             QStringLiteral("The update server answered 503.")},
            {{.outcome = FeedOutcome::Unreadable, .body = {}, .message = {}},
             QStringLiteral("The update server sent something unreadable.")},
            {{.outcome = FeedOutcome::Failed, .body = {}, .message = QStringLiteral("No network")},
             QStringLiteral("No network")},
        };
        for (const auto &[answer, message] : failures) {
            updates.service.check(UpdateService::Check::Manual);
            QCOMPARE(updates.service.state(), UpdateState(Checking()));
            updates.server.answer(answer);
            QCOMPARE(updates.service.state(), UpdateState(Failed{message}));
        }
        QCOMPARE(updates.service.lastCheck(), last);
    }

    void asksWithTheTimeAndNothingElse()
    {
        Updates updates;
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        updates.service.check(UpdateService::Check::Manual);
        const QString address = updates.server.addresses.first().toString();
        const auto start = QStringLiteral("https://feed.example/version.json?t=");
        QVERIFY2(address.startsWith(start), qPrintable(address));
        const qint64 time = address.sliced(start.size()).toLongLong();
        QVERIFY(before <= time && time <= QDateTime::currentSecsSinceEpoch());
    }

    void aSkippedVersionIsOfferedOnlyWhenAskedFor()
    {
        Updates updates;
        updates.check(UpdateService::Check::Automatic, kNewer);
        updates.service.skip();
        QCOMPARE(updates.service.state(), UpdateState(Current()));
        QCOMPARE(updates.settings.skippedUpdateVersion(), QStringLiteral("1.5"));
        updates.service.skip(); // nothing is offered
        QCOMPARE(updates.check(UpdateService::Check::Automatic, kNewer), UpdateState(Current()));
        QVERIFY(std::holds_alternative<Available>(updates.check(UpdateService::Check::Manual, kNewer)));
        QVERIFY(std::holds_alternative<Available>(
            updates.check(UpdateService::Check::Automatic, json("{'version': '1.5.0'}"))));
    }

    void checksSoonAfterTheStartAndEverySixHours()
    {
        Updates updates;
        updates.service.startBackgroundChecks();
        updates.clock.advance(5999ms);
        QCOMPARE(updates.requests(), 0);
        updates.clock.advance(1ms);
        QCOMPARE(updates.requests(), 1);
        updates.clock.advance(8s); // as long as the answer takes
        updates.server.answer(FeedAnswer());
        updates.clock.advance(6h - 1ms);
        QCOMPARE(updates.requests(), 1);
        QCOMPARE(updates.clock.firedCount(), 1);
        updates.clock.advance(1ms);
        QCOMPARE(updates.requests(), 2);
        updates.server.answer(kNewer);
        QCOMPARE(updates.clock.pendingCount(), 1);
    }

    void followsTheSetting()
    {
        Updates updates;
        updates.settings.setAutoCheckUpdates(false);
        updates.service.startBackgroundChecks();
        QCOMPARE(updates.clock.pendingCount(), 0);
        updates.settings.setAutoCheckUpdates(true);
        updates.clock.advance(3s);
        updates.settings.setAutoCheckUpdates(false);
        QCOMPARE(updates.clock.pendingCount(), 0);
        updates.settings.setAutoCheckUpdates(true);
        updates.clock.advance(6s);
        QCOMPARE(updates.requests(), 1);

        // Switched on once more, the seconds begin anew.
        updates.server.answer(kNewer);
        updates.settings.setAutoCheckUpdates(true);
        updates.clock.advance(4s);
        updates.settings.setRaw(SettingNames::kAutoCheckUpdates.toString(), true);
        updates.clock.advance(5s);
        QCOMPARE(updates.requests(), 1);
        updates.clock.advance(1s);
        QCOMPARE(updates.requests(), 2);

        // Switched during a check: what that one would have waited for is forgotten.
        updates.settings.setAutoCheckUpdates(false);
        updates.server.answer(kNewer);
        QCOMPARE(updates.clock.pendingCount(), 0);
        updates.settings.setAutoCheckUpdates(true);
        updates.clock.advance(6s);
        updates.settings.setAutoCheckUpdates(false);
        updates.settings.setAutoCheckUpdates(true);
        updates.server.answer(kNewer);
        updates.clock.advance(6s);
        QCOMPARE(updates.requests(), 4);
    }

    void oneRequestServesAllWhoAskMeanwhile()
    {
        Updates updates;
        updates.settings.setSkippedUpdateVersion(QStringLiteral("1.5"));
        QList<UpdateState> told;
        const auto note = [&told](const UpdateState &state) { told << state; };
        updates.service.check(UpdateService::Check::Automatic, note);
        updates.service.check(UpdateService::Check::Manual, [&](const UpdateState &state) {
            note(state);
            updates.service.check(UpdateService::Check::Automatic, note); // from inside
        });
        QCOMPARE(updates.requests(), 1);
        updates.server.answer(kNewer);
        QCOMPARE(told.size(), 2);
        QVERIFY(std::holds_alternative<Available>(told.at(0)) && told.at(0) == told.at(1));
        QCOMPARE(updates.requests(), 2);
        updates.server.answer(kNewer);
        QCOMPARE(told.value(2), UpdateState(Current()));
    }

    void withoutAFeedItSaysSoAndAsksNobody()
    {
        Updates updates("1.4", "https://feed.invalid/version.json");
        updates.service.startBackgroundChecks();
        QCOMPARE(updates.clock.pendingCount(), 0);
        updates.service.check(UpdateService::Check::Manual);
        QCOMPARE(updates.service.state(), UpdateState(Checking()));
        updates.clock.advance(0ms);
        QCOMPARE(updates.service.state(),
                 UpdateState(Failed{QStringLiteral("This build of Ostrelle has no update server.")}));
        QCOMPARE(updates.requests(), 0);
    }

    void tellsTheUser()
    {
        Updates updates("");
        const auto shown = [&updates] {
            const UpdateStatus status = UpdateStatus::of(updates.service, updates.settings);
            return QString(status.title + QLatin1Char('|') + status.subtitle);
        };
        QCOMPARE(shown(), QStringLiteral("Version 1.0|"));
        updates.settings.setAutoCheckUpdates(false);
        QCOMPARE(shown(), QStringLiteral("Version 1.0|Automatic checks are off."));
        updates.service.check(UpdateService::Check::Manual);
        QCOMPARE(shown(), QStringLiteral("Checking…|"));
        updates.server.answer(FeedAnswer{.body = {}, .message = QStringLiteral("No network")});
        QCOMPARE(shown(), QStringLiteral("Couldn't check for updates|No network"));
        updates.check(UpdateService::Check::Manual, kNewer);
        QCOMPARE(shown(), QStringLiteral("Version 1.5 is available|Faster."));
        updates.check(UpdateService::Check::Manual, json("{'version': '2'}"));
        QCOMPARE(shown(), QStringLiteral("Version 2 is available|You're on 1.0."));
        updates.check(UpdateService::Check::Manual, json("{'version': '2', 'notes': 'Faster.\\nCalmer.'}"));
        QCOMPARE(shown(), QStringLiteral("Version 2 is available|Faster. Calmer."));
        updates.check(UpdateService::Check::Manual, json("{'version': '2." + QByteArray(80, '0') + "', 'notes': '" +
                                                         QString::fromUtf8("🙂").repeated(9000).toUtf8() + "'}"));
        QCOMPARE(shown(), QStringLiteral("Version 2.%1… is available|%2…")
                              .arg(QString(38, u'0'), QString::fromUtf8("🙂").repeated(250)));
        updates.check(UpdateService::Check::Manual, json("{'version': '1'}"));
        const QRegularExpression current(
            QStringLiteral("^You're up to date\\|Last checked ([A-Z][a-z]{2} \\d{1,2}, \\d{4} at \\d{1,2}:\\d\\d [AP]M"
                           "|\\d{1,2} [A-Z][a-z]{2} \\d{4} at \\d\\d:\\d\\d)\\.$"));
        QVERIFY2(current.match(shown()).hasMatch(), qPrintable(shown()));
    }
};

OSTRELLE_TEST(UpdateServiceTest)
#include "UpdateServiceTest.moc"
