#include "FilesFixture.h"

#include "files/AssetShelfService.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ostrelle;

class AssetShelfServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void takesWhatExistsOnTopAndOnce();
    void keepsTheOrderOfAdditions();
    void stepsFollowTheList();
    void dropsMissingFilesAtStartOnly();
    void aDeadMountLosesNothing();
    void removingStopsThePreview();
    void undoBringsBackTheLastRemoval();
    void erasureCoversWhatIsStillBeingJudged();
    void aThousandFilesAreOneStep();

private:
    AssetShelfService &shelf() { return *m_shelf; }
    void open();
    QString paths() const;
    QUuid idOf(const char *path) const;
    void addExisting(const QStringList &paths);

    std::unique_ptr<FilesFixture> m_fixture;
    std::unique_ptr<JsonListStore<ShelfItem>> m_store;
    std::unique_ptr<AssetShelfService> m_shelf;
};

void AssetShelfServiceTest::init()
{
    TestBase::init();
    m_shelf.reset();
    m_store.reset();
    m_fixture = std::make_unique<FilesFixture>();
    for (const char *path : {"/a", "/b", "/c", "/d"})
        m_fixture->files.add(path);
    open();
}

void AssetShelfServiceTest::open()
{
    m_shelf.reset();
    m_store.reset();
    m_store = std::make_unique<JsonListStore<ShelfItem>>(m_fixture->folder.path());
    m_shelf =
        std::make_unique<AssetShelfService>(*m_store, m_fixture->presence, m_fixture->preview, m_fixture->haptics);
}

QString AssetShelfServiceTest::paths() const
{
    QString text;
    for (const ShelfItem &item : m_shelf->items())
        text += item.path;
    return text;
}

QUuid AssetShelfServiceTest::idOf(const char *path) const
{
    for (const ShelfItem &item : m_shelf->items()) {
        if (item.path == QLatin1StringView(path))
            return item.id;
    }
    return {};
}

void AssetShelfServiceTest::addExisting(const QStringList &paths)
{
    shelf().addExisting(paths);
}

void AssetShelfServiceTest::takesWhatExistsOnTopAndOnce()
{
    shelf().add({QStringLiteral("/a"), QStringLiteral("/none"), QStringLiteral("/x/../b"), QStringLiteral("/a"),
                 QStringLiteral("/c")});
    QTRY_COMPARE(paths(), QStringLiteral("/c/b/a"));
    QCOMPARE(m_fixture->ticks(), 1);

    QVERIFY(m_store->flush());
    const QString file = m_fixture->folder.filePath(QStringLiteral("shelf.json"));
    QVERIFY(QFile::remove(file));
    shelf().add({QStringLiteral("/a"), QStringLiteral("/b")}); // both known to exist
    shelf().add({});
    QCOMPARE(paths(), QStringLiteral("/c/b/a"));
    QCOMPARE(m_fixture->ticks(), 1);
    QVERIFY(m_store->flush());
    QVERIFY(!QFile::exists(file));

    m_fixture->settings.setHapticFeedback(false);
    addExisting({QStringLiteral("/d")});
    QCOMPARE(m_fixture->ticks(), 1);
    QVERIFY(m_store->flush());
    QCOMPARE(JsonListStore<ShelfItem>(m_fixture->folder.path()).load(), shelf().items());
}

void AssetShelfServiceTest::keepsTheOrderOfAdditions()
{
    m_fixture->files.mount("/net");
    m_fixture->files.add("/net/far");
    m_fixture->files.kill("/net");
    shelf().add({QStringLiteral("/a"), QStringLiteral("/net/far")});
    shelf().add({QStringLiteral("/b")});
    QTRY_COMPARE(m_fixture->files.hangingCount(), 1);
    QCOMPARE(paths(), QString());
    m_fixture->clock.advance(FilePresence::kDeadline);
    QTRY_COMPARE(paths(), QStringLiteral("/b/net/far/a"));
}

void AssetShelfServiceTest::stepsFollowTheList()
{
    using Kind = ListStep::Kind;
    addExisting({QStringLiteral("/a"), QStringLiteral("/b")});
    QSignalSpy changed(&shelf(), &AssetShelfService::itemsChanged);
    QList<QList<ShelfItem>> observed;
    const auto notifier = shelf().bindableItems().addNotifier([&] { observed.append(shelf().items()); });
    addExisting({QStringLiteral("/c"), QStringLiteral("/d")});
    shelf().remove({idOf("/a"), idOf("/c")});
    shelf().clear();
    QList<QList<ListStep>> steps;
    for (const auto &arguments : changed)
        steps.append(arguments.first().value<QList<ListStep>>());
    QCOMPARE(steps, QList<QList<ListStep>>({{{Kind::Insert, 0, 2, 0}},
                                            {{Kind::Remove, 3, 1, 0}, {Kind::Remove, 1, 1, 0}},
                                            {{Kind::Remove, 0, 2, 0}}}));
    QCOMPARE(observed.size(), 3);
}

void AssetShelfServiceTest::dropsMissingFilesAtStartOnly()
{
    addExisting({QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/c")});
    QVERIFY(m_store->flush());
    m_fixture->files.remove("/b");
    QCOMPARE(paths(), QStringLiteral("/c/b/a"));
    open();
    QCOMPARE(paths(), QStringLiteral("/c/b/a"));
    QTRY_COMPARE(paths(), QStringLiteral("/c/a"));
    QVERIFY(!shelf().canUndo());
    QVERIFY(m_store->flush());
    QCOMPARE(JsonListStore<ShelfItem>(m_fixture->folder.path()).load(), shelf().items());
}

void AssetShelfServiceTest::aDeadMountLosesNothing()
{
    addExisting({QStringLiteral("/net/far"), QStringLiteral("/gone")});
    QVERIFY(m_store->flush());
    m_fixture->files.mount("/net");
    m_fixture->files.kill("/net");
    open();
    QTRY_COMPARE(m_fixture->files.hangingCount(), 1);
    QTRY_COMPARE(m_fixture->presence.facts(QStringLiteral("/gone")).kind, FileFacts::Kind::Missing);
    m_fixture->clock.advance(FilePresence::kDeadline);
    QTRY_COMPARE(paths(), QStringLiteral("/net/far"));
    m_fixture->files.revive(); // and what was there is not
    QTRY_COMPARE(m_fixture->presence.facts(QStringLiteral("/net/far")).kind, FileFacts::Kind::Missing);
    QCOMPARE(paths(), QStringLiteral("/net/far"));
}

void AssetShelfServiceTest::removingStopsThePreview()
{
    addExisting({QStringLiteral("/a"), QStringLiteral("/b")});
    m_fixture->preview.toggle(QStringLiteral("/a"));
    shelf().remove({idOf("/b")});
    QCOMPARE(m_fixture->preview.playingPath(), QStringLiteral("/a"));
    shelf().remove({idOf("/a")});
    QCOMPARE(m_fixture->preview.playingPath(), QString());
    m_fixture->preview.toggle(QStringLiteral("/elsewhere"));
    shelf().clear();
    QCOMPARE(m_fixture->preview.playingPath(), QString());
}

void AssetShelfServiceTest::undoBringsBackTheLastRemoval()
{
    addExisting({QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/c")});
    const QList<ShelfItem> all = shelf().items();
    shelf().remove({idOf("/b")});
    addExisting({QStringLiteral("/d")});
    QVERIFY(shelf().canUndo());
    shelf().undo();
    QCOMPARE(paths(), QStringLiteral("/d/c/b/a"));
    QCOMPARE(shelf().items().mid(1), all);
    QVERIFY(!shelf().canUndo());

    shelf().clear();
    shelf().remove({idOf("/a")}); // nothing left to remove
    QVERIFY(shelf().canUndo());
    addExisting({QStringLiteral("/b"), QStringLiteral("/c")});
    shelf().undo();
    QCOMPARE(paths(), QStringLiteral("/c/b/d/a"));

    shelf().remove({idOf("/a")});
    addExisting({QStringLiteral("/a")});
    QVERIFY(!shelf().canUndo());
    shelf().clear();
    shelf().lapse();
    QVERIFY(!shelf().canUndo());
    shelf().undo();
    QCOMPARE(paths(), QString());
    QVERIFY(m_store->flush());
    QCOMPARE(JsonListStore<ShelfItem>(m_fixture->folder.path()).load(), QList<ShelfItem>());
}

void AssetShelfServiceTest::erasureCoversWhatIsStillBeingJudged()
{
    m_fixture->files.mount("/net");
    m_fixture->files.add("/net/far");
    m_fixture->files.kill("/net");
    addExisting({QStringLiteral("/a")});
    shelf().add({QStringLiteral("/net/far")});
    shelf().add({QStringLiteral("/b")}); // waits for its turn
    QTRY_COMPARE(m_fixture->files.hangingCount(), 1);
    shelf().eraseAll();
    shelf().add({QStringLiteral("/c")});
    QTRY_COMPARE(paths(), QStringLiteral("/c"));
    m_fixture->clock.advance(FilePresence::kDeadline);
    m_fixture->files.revive();
    shelf().add({QStringLiteral("/d")});
    QTRY_COMPARE(paths(), QStringLiteral("/d/c"));
    QVERIFY(!shelf().canUndo());
}

void AssetShelfServiceTest::aThousandFilesAreOneStep()
{
    QStringList many;
    for (int i = 0; i < 1000; ++i) {
        m_fixture->files.add("/many/" + QByteArray::number(i));
        many.append(QStringLiteral("/many/%1").arg(i));
    }
    QSignalSpy changed(&shelf(), &AssetShelfService::itemsChanged);
    shelf().add(many);
    QTRY_COMPARE(shelf().items().size(), 1000);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().value<QList<ListStep>>(), QList<ListStep>({{ListStep::Kind::Insert, 0, 1000, 0}}));
    QCOMPARE(shelf().items().first().path, many.last());
}

OSTRELLE_TEST(AssetShelfServiceTest)
#include "AssetShelfServiceTest.moc"
