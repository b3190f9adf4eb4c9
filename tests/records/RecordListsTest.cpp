#include "records/RecordLists.h"
#include "records/JsonListStore.h"
#include "records/ListStep.h"
#include "records/ListUndo.h"
#include "records/PathText.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

namespace {

/// A project per letter.
QList<Project> listOf(const QString &letters)
{
    QList<Project> projects;
    for (const QChar letter : letters) {
        const QUuid id(letter.unicode(), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
        projects.append({id, u'/' + QString(letter.toLower()), QString(letter)});
    }
    return projects;
}

QString namesOf(const QList<Project> &projects)
{
    QString names;
    for (const Project &project : projects)
        names += project.displayName;
    return names;
}

/// What a list model makes of the steps.
QList<Project> applied(QList<Project> rows, const QList<ListStep> &steps, const QList<Project> &after)
{
    for (const ListStep &step : steps) {
        switch (step.kind) {
        case ListStep::Kind::Insert:
            for (int i = step.at; i < step.at + step.count; ++i)
                rows.insert(i, after[i]);
            break;
        case ListStep::Kind::Remove:
            rows.remove(step.at, step.count);
            break;
        case ListStep::Kind::Move:
            rows.move(step.from, step.at);
            break;
        case ListStep::Kind::Change:
            rows[step.at] = after[step.at];
            break;
        }
    }
    return rows;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class RecordListsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void standardizesPathsInTheTextAlone();
    void putsNewPathsOnTopOnce();
    void appendsFoldersOnce();
    void movesAsListsDo();
    void stepsLeadFromAnyListToAnyOther();
    void aRowThatGoesDownIsOneStep();
    void undoKeepsWhatHappenedSince_data();
    void undoKeepsWhatHappenedSince();
    void writesAndReadsTheStoredForm();
    void keepsAnUndecodableStoreUntilItSaves_data();
    void keepsAnUndecodableStoreUntilItSaves();
    void givesEveryRecordAnIdOfItsOwn();
    void tellsWhenTheListIsOnTheDisk();
    void tellsOfAListThoughTheNextOneIsWaiting();
};

void RecordListsTest::standardizesPathsInTheTextAlone()
{
    for (const auto &[path, standardized] : {std::pair("/a/./b/../c", "/a/c"), std::pair("/a//b/", "/a/b"),
                                             std::pair("/..", "/"), std::pair("/../../a", "/a"), std::pair("/", "/")})
        QCOMPARE(standardizedPath(QString::fromLatin1(path)), QString::fromLatin1(standardized));
}

void RecordListsTest::putsNewPathsOnTopOnce()
{
    const QList<ShelfItem> items =
        withPaths({}, {QStringLiteral("/a"), QStringLiteral("/x/../b"), QStringLiteral("/a"), QStringLiteral("/c")}, 5);
    QStringList paths;
    for (const ShelfItem &item : items)
        paths.append(item.path);
    QCOMPARE(paths, QStringList({QStringLiteral("/c"), QStringLiteral("/b"), QStringLiteral("/a")}));
    QCOMPARE(withPaths(items, {QStringLiteral("/b/.")}, 6), items);
}

void RecordListsTest::appendsFoldersOnce()
{
    const QList<Project> projects =
        withFolders(listOf(QStringLiteral("A")),
                    {QStringLiteral("/b/Songs/"), QStringLiteral("/a"), QStringLiteral("/b/x/../Songs")});
    QCOMPARE(projects.size(), 2);
    QCOMPARE(projects[1].displayName, QStringLiteral("Songs"));
    QCOMPARE(projectName(projects[1], QStringLiteral(" \n ")), QStringLiteral("Songs"));
    QCOMPARE(projectName(projects[1], QStringLiteral("  The word\n")), QStringLiteral("The word"));
}

void RecordListsTest::movesAsListsDo()
{
    const QList<Project> list = listOf(QStringLiteral("ABCD"));
    QCOMPARE(namesOf(moved(list, {0}, 3)), QStringLiteral("BCAD"));
    QCOMPARE(namesOf(moved(list, {3}, 0)), QStringLiteral("DABC"));
    QCOMPARE(namesOf(moved(list, {3, 0}, 2)), QStringLiteral("BADC"));
    QCOMPARE(namesOf(moved(list, {1}, 99)), QStringLiteral("ACDB"));
    for (int from = 0; from < 4; ++from) {
        for (int to = 0; to < 4; ++to)
            QCOMPARE(indexOf(moved(list, {from}, destinationOf(from, to)), list[from].id), to);
    }
}

void RecordListsTest::stepsLeadFromAnyListToAnyOther()
{
    QRandomGenerator random(3);
    const QString letters = QStringLiteral("ABCDEFGHIJ");
    const auto shuffled = [&] {
        QString result;
        for (const QChar letter : letters) {
            if (random.bounded(3) > 0)
                result.insert(random.bounded(static_cast<int>(result.size()) + 1), letter);
        }
        return listOf(result);
    };
    for (int round = 0; round < 3000; ++round) {
        const QList<Project> before = shuffled();
        QList<Project> after = shuffled();
        if (!after.isEmpty() && round % 2 == 0)
            after[0].displayName = QStringLiteral("renamed");
        QCOMPARE(applied(before, listSteps(before, after), after), after);
    }
}

void RecordListsTest::aRowThatGoesDownIsOneStep()
{
    using Kind = ListStep::Kind;
    const QList<Project> list = listOf(QStringLiteral("ABCD"));
    QCOMPARE(listSteps(list, moved(list, {0}, 3)), QList<ListStep>({{Kind::Move, 2, 1, 0}}));
    QCOMPARE(listSteps(list, moved(list, {3}, 0)), QList<ListStep>({{Kind::Move, 0, 1, 3}}));
    QCOMPARE(listSteps(list, listOf(QStringLiteral("XYABCD"))), QList<ListStep>({{Kind::Insert, 0, 2, 0}}));
    QCOMPARE(listSteps(list, {}), QList<ListStep>({{Kind::Remove, 0, 4, 0}}));
}

void RecordListsTest::undoKeepsWhatHappenedSince_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("undone");
    const auto row = [](const char *name, const char *before, const char *after, const char *now, const char *undone) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after) << QString::fromLatin1(now)
                            << QString::fromLatin1(undone);
    };
    row("removed", "ABC", "AC", "AC", "ABC");
    row("cleared, then filled", "ABC", "", "X", "XABC");
    row("added on top since", "ABC", "BC", "XBC", "XABC");
    row("appended since", "ABC", "AB", "ABX", "ABCX");
    row("others went since", "ABCD", "ACD", "AD", "ABD");
    row("added again since", "ABC", "AC", "bAC", "bAC");
    row("reordered", "ABCD", "BCDA", "BCDA", "ABCD");
    row("reordered, then changed", "ABCD", "BCDA", "BXDA", "ABXD");
}

void RecordListsTest::undoKeepsWhatHappenedSince()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, now);
    QFETCH(QString, undone);
    QCOMPARE(namesOf(ListUndo(listOf(before), listOf(after)).undone(listOf(now))), undone);
}

void RecordListsTest::writesAndReadsTheStoredForm()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("shelf.json"));
    const QUuid id = QUuid::fromString(QStringLiteral("9b2c1a8e-0000-4000-8000-00000000000a"));
    const QList<ShelfItem> items{{id, QStringLiteral("/tmp/\"n\u00e4\nme\""), 700000000.125}};
    {
        JsonListStore<ShelfItem> store(folder.path());
        QCOMPARE(store.load(), QList<ShelfItem>());
        store.save({});
        store.save(items);
        QVERIFY(store.flush());
    }
    const QByteArray bytes = contents(path);
    QVERIFY(!bytes.contains('\n') && !bytes.contains(' '));
    const QJsonObject record = QJsonDocument::fromJson(bytes).array().at(0).toObject();
    QCOMPARE(record, QJsonObject({{QStringLiteral("id"), QStringLiteral("9B2C1A8E-0000-4000-8000-00000000000A")},
                                  {QStringLiteral("path"), items[0].path},
                                  {QStringLiteral("addedAt"), 700000000.125}}));
    QCOMPARE(JsonListStore<ShelfItem>(folder.path()).load(), items);

    const Project project{id, QStringLiteral("/b"), QStringLiteral("Name")};
    QCOMPARE(Project::fromJson(toJson(project)), std::optional(project));
    QCOMPARE(toJson(project).keys(),
             QStringList({QStringLiteral("displayName"), QStringLiteral("id"), QStringLiteral("path")}));
}

void RecordListsTest::keepsAnUndecodableStoreUntilItSaves_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = R"({"id":"9B2C1A8E-0000-4000-8000-000000000001","path":"/a","addedAt":1.5})";
    const auto changed = [&](const char *from, const char *to) {
        return '[' + good + ',' + QByteArray(good).replace(from, to) + ']';
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << '[' + good;
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\0\xff",
                                          6);
    QTest::newRow("object") << good;
    QTest::newRow("no record") << QByteArray("[1]");
    QTest::newRow("missing key") << changed(R"(,"addedAt":1.5)", "");
    QTest::newRow("wrong type") << changed("1.5", R"("today")");
    QTest::newRow("no identifier") << changed("9B2C1A8E-", "9B2C1A8E");
}

void RecordListsTest::keepsAnUndecodableStoreUntilItSaves()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("shelf.json"));
    put(path, bytes);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("The shelf could not be read")));
    JsonListStore<ShelfItem> store(folder.path());
    QCOMPARE(store.load(), QList<ShelfItem>());
    QVERIFY(store.flush());
    QCOMPARE(contents(path), bytes);
    store.save({});
    QVERIFY(store.flush());
    QCOMPARE(contents(path), QByteArray("[]"));
    const QStringList aside = QDir(folder.path()).entryList({QStringLiteral("shelf.unreadable-*.json")});
    QCOMPARE(aside.size(), 1);
    QCOMPARE(contents(folder.filePath(aside.first())), bytes);
}

void RecordListsTest::givesEveryRecordAnIdOfItsOwn()
{
    const QTemporaryDir folder;
    const QByteArray id = R"({"id":"9B2C1A8E-0000-4000-8000-000000000001","displayName":"n","path":)";
    const QByteArray none = R"({"id":"00000000-0000-0000-0000-000000000000","displayName":"n","path":)";
    put(folder.filePath(QStringLiteral("projects.json")),
        '[' + id + R"("/a"},)" + id + R"("/b"},)" + none + R"("/c"}])");
    const QList<Project> projects = JsonListStore<Project>(folder.path()).load();
    QCOMPARE(projects.size(), 3);
    QVERIFY(projects[0].id != projects[1].id);
    QVERIFY(!projects[2].id.isNull());
}

void RecordListsTest::tellsWhenTheListIsOnTheDisk()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("data"));
    std::optional<bool> isSaved;
    const auto tell = [&](bool saved) { isSaved = saved; };
    JsonListStore<ShelfItem> store(path);
    QCOMPARE(store.load(), QList<ShelfItem>());
    put(path, "where the folder would be");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("The shelf could not be saved")));
    store.save({});
    store.whenSaved(this, tell);
    QVERIFY(!isSaved); // never from inside the call
    QTRY_COMPARE(isSaved, std::optional(false));
    QVERIFY(QFile::remove(path));
    isSaved.reset();
    store.whenSaved(this, tell);
    QTRY_COMPARE(isSaved, std::optional(true));
    QCOMPARE(contents(path + QStringLiteral("/shelf.json")), QByteArray("[]"));
}

void RecordListsTest::tellsOfAListThoughTheNextOneIsWaiting()
{
    const QTemporaryDir folder;
    JsonListFile file(folder.filePath(QStringLiteral("list.json")), QStringLiteral("The list"));
    QSemaphore begun;
    QSemaphore mayGoOn;
    file.save([&] {
        begun.release();
        mayGoOn.acquire();
        return QJsonArray();
    });
    begun.acquire();
    std::optional<bool> isSaved;
    file.whenSaved(this, [&](bool saved) { isSaved = saved; });
    file.save([] { return QJsonArray{1}; });
    mayGoOn.release();
    QTRY_COMPARE(isSaved, std::optional(true));
    QVERIFY(file.flush());
}

OSTRELLE_TEST(RecordListsTest)
#include "RecordListsTest.moc"
