#include "files/RecentFiles.h"
#include "StandInThumbnails.h"
#include "files/RecentThumbnails.h"
#include "foundation/DefaultsDatabase.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace ostrelle;

class RecentFilesTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void keepsTheNewestFilesOnce();
    void storesThemAsBinaryData();
    void refusesAListWithOneBadElement_data();
    void refusesAListWithOneBadElement();
    void takesAStoredListAsItIs();
    void bringsBackWhatWasRemovedLast();
    void undoKeepsWhatCameSince();
    void keepsTheThumbnailsMadeLast();
    void triesAgainForAMissingThumbnail();

private:
    QString names() const;
    void recordAll(const QString &letters);

    std::optional<QTemporaryDir> m_folder;
    std::optional<DefaultsDatabase> m_defaults;
    std::optional<RecentFiles> m_recents;
};

namespace {

const QString kKey = QStringLiteral("audioInfo.recents");

QString pathOf(QChar letter)
{
    return QStringLiteral("/a/") + letter;
}

} // namespace

void RecentFilesTest::init()
{
    TestBase::init();
    m_recents.reset();
    m_defaults.reset();
    m_folder.emplace();
    m_defaults.emplace(m_folder->filePath(QStringLiteral("defaults.json")));
    m_recents.emplace(*m_defaults, kKey, 20);
}

QString RecentFilesTest::names() const
{
    QString names;
    for (const RecentFile &file : m_recents->items())
        names += file.name;
    return names;
}

/// The first one ends on top.
void RecentFilesTest::recordAll(const QString &letters)
{
    for (auto letter = letters.crbegin(); letter != letters.crend(); ++letter)
        m_recents->record(pathOf(*letter), QStringLiteral("summary"));
}

void RecentFilesTest::keepsTheNewestFilesOnce()
{
    recordAll(QStringLiteral("ABCDEFGHIJKLMNOPQRSTU")); // one more than the limit
    QCOMPARE(names(), QStringLiteral("ABCDEFGHIJKLMNOPQRST"));
    const double date = m_recents->items().last().date;
    m_recents->record(pathOf(u'T'), QStringLiteral("new"));
    QCOMPARE(names(), QStringLiteral("TABCDEFGHIJKLMNOPQRS"));
    QCOMPARE(m_recents->items().first().summary, QStringLiteral("new"));
    QVERIFY(m_recents->items().first().date >= date);
}

void RecentFilesTest::storesThemAsBinaryData()
{
    QVERIFY(!m_defaults->value(kKey));
    m_recents->record(QStringLiteral("/a/Zoë \"live\".wav"), QStringLiteral("03:25 · WAV"));
    const auto list = QJsonDocument::fromJson(m_defaults->data(kKey).value_or(QByteArray())).array();
    QCOMPARE(list.size(), 1);
    const QJsonObject stored = list[0].toObject();
    QCOMPARE(stored.keys(), (QStringList{QStringLiteral("date"), QStringLiteral("name"), QStringLiteral("path"),
                                         QStringLiteral("summary")}));
    // Seconds since 2001, not since 1970.
    const double now = double(QDateTime::currentMSecsSinceEpoch()) / 1000 - 978307200;
    QVERIFY(std::abs(stored[u"date"].toDouble() - now) < 60);
    QVERIFY(m_defaults->flush());
    DefaultsDatabase reopened(m_folder->filePath(QStringLiteral("defaults.json")));
    QCOMPARE(RecentFiles(reopened, kKey, 20).items(), m_recents->items());
    m_recents->clear();
    QCOMPARE(m_defaults->data(kKey), QByteArray("[]"));
}

void RecentFilesTest::refusesAListWithOneBadElement_data()
{
    QTest::addColumn<QByteArray>("bad");
    QTest::newRow("a key is missing") << QByteArray(R"({"path":"/b","name":"b","date":1})");
    QTest::newRow("a date in words") << QByteArray(R"({"path":"/b","name":"b","summary":"","date":"today"})");
    QTest::newRow("no object") << QByteArray("null");
    QTest::newRow("no JSON") << QByteArray("{");
}

void RecentFilesTest::refusesAListWithOneBadElement()
{
    QFETCH(QByteArray, bad);
    const QByteArray stored = R"([{"path":"/a","name":"a","summary":"","date":1},)" + bad + "]";
    m_defaults->setData(kKey, stored);
    m_recents.emplace(*m_defaults, kKey, 20);
    QVERIFY(m_recents->items().isEmpty());
    QCOMPARE(m_defaults->data(kKey), stored);
    m_recents->record(pathOf(u'A'), {});
    QCOMPARE(RecentFiles(*m_defaults, kKey, 20).items(), m_recents->items());
}

void RecentFilesTest::takesAStoredListAsItIs()
{
    recordAll(QStringLiteral("ABCDE"));
    m_recents.emplace(*m_defaults, kKey, 3);
    QCOMPARE(names(), QStringLiteral("ABCDE"));
    m_recents->remove(pathOf(u'B'));
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("ABCDE"));
    m_recents->record(pathOf(u'F'), {});
    QCOMPARE(names(), QStringLiteral("FAB"));
    // Put together by hand, it may repeat a path.
    m_defaults->setData(kKey, R"([{"path":"/a","name":"a","summary":"1","date":2},
                                 {"path":"/a","name":"a","summary":"2","date":1}])");
    m_recents.emplace(*m_defaults, kKey, 20);
    QCOMPARE(m_recents->items().size(), 1);
    QCOMPARE(m_recents->items().first().summary, QStringLiteral("1"));
}

void RecentFilesTest::bringsBackWhatWasRemovedLast()
{
    recordAll(QStringLiteral("ABCD"));
    QVERIFY(!m_recents->canUndo());
    m_recents->remove(pathOf(u'B'));
    m_recents->remove(pathOf(u'X'));
    QCOMPARE(names(), QStringLiteral("ACD"));
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("ABCD"));
    QVERIFY(!m_recents->canUndo());
    m_recents->clear();
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("ABCD"));
    m_recents->remove(pathOf(u'C'));
    m_recents->lapse();
    QVERIFY(!m_recents->canUndo());
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("ABD"));
}

void RecentFilesTest::undoKeepsWhatCameSince()
{
    recordAll(QStringLiteral("ABCD"));
    m_recents->remove(pathOf(u'B'));
    m_recents->record(pathOf(u'E'), {});
    m_recents->record(pathOf(u'D'), QStringLiteral("later"));
    m_recents->removeMissing(pathOf(u'C'));
    QCOMPARE(names(), QStringLiteral("DEA"));
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("DEAB"));
    QCOMPARE(m_recents->items().first().summary, QStringLiteral("later"));

    m_recents->clear();
    m_recents->record(pathOf(u'B'), QStringLiteral("again"));
    m_recents->undo();
    QCOMPARE(names(), QStringLiteral("BDEA"));
    QCOMPARE(m_recents->items().first().summary, QStringLiteral("again"));
    // What is there again needs no undo.
    m_recents->remove(pathOf(u'A'));
    m_recents->record(pathOf(u'A'), {});
    QVERIFY(!m_recents->canUndo());
}

void RecentFilesTest::keepsTheThumbnailsMadeLast()
{
    StandInThumbnails source;
    RecentThumbnails thumbnails(source);
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const auto make = [&](int first, int last) {
        for (int i = first; i <= last; ++i) {
            thumbnails.load(pathOf(QChar(u'A' + i)));
            source.serve(picture);
        }
    };
    make(0, RecentThumbnails::kCapacity - 1);
    thumbnails.load(pathOf(u'A')); // there already: asking makes nothing younger
    QVERIFY(source.waiting().isEmpty());
    QVERIFY(!thumbnails.cached(pathOf(u'A')).isNull());
    make(RecentThumbnails::kCapacity, RecentThumbnails::kCapacity);
    QVERIFY(thumbnails.cached(pathOf(u'A')).isNull());
    QVERIFY(!thumbnails.cached(pathOf(u'B')).isNull());
}

void RecentFilesTest::triesAgainForAMissingThumbnail()
{
    StandInThumbnails source;
    RecentThumbnails thumbnails(source);
    QSignalSpy arrived(&thumbnails, &RecentThumbnails::arrived);
    thumbnails.load(pathOf(u'A'));
    thumbnails.load(pathOf(u'A'));
    QCOMPARE(source.waiting(), QStringList(pathOf(u'A')));
    QCOMPARE(source.pixelSize(), 64);
    source.serve({});
    QVERIFY(thumbnails.cached(pathOf(u'A')).isNull());
    QCOMPARE(arrived.count(), 0);
    thumbnails.load(pathOf(u'A'));
    QCOMPARE(source.waiting(), QStringList(pathOf(u'A')));
    source.serve(QImage(8, 8, QImage::Format_RGB32));
    QCOMPARE(arrived.count(), 1);
}

OSTRELLE_TEST(RecentFilesTest)
#include "RecentFilesTest.moc"
