#include "files/AssetThumbnails.h"
#include "FilesFixture.h"
#include "StandInThumbnails.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

class AssetThumbnailsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void servesWhatIsInSightFirst();
    void asksForPlainFilesOnly();
    void makesNewOnesWhenFilesOrScaleChange();
    void tellsHowFarItIs();
};

namespace {

struct Pictures : FilesFixture
{
    /// Files "/a/0" to "/a/N-1", found.
    QList<ShelfItem> items(int count)
    {
        QList<ShelfItem> items;
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            paths.append(QStringLiteral("/a/%1").arg(i));
            files.add(paths.last().toUtf8());
            items.append({.id = QUuid::createUuid(), .path = paths.last(), .addedAt = 0});
        }
        find(paths);
        return items;
    }
    void find(const QStringList &paths)
    {
        bool isFound = false;
        presence.ask(paths, &thumbnails, [&](const QList<FileFacts> &) { isFound = true; });
        QTRY_VERIFY(isFound);
    }
    void serveAll()
    {
        while (!source.waiting().isEmpty())
            source.serve(red());
    }
    static QImage red()
    {
        QImage image(120, 60, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QPainter(&image).fillRect(30, 0, 60, 60, Qt::red);
        return image;
    }

    StandInThumbnails source;
    AssetThumbnails thumbnails{&source, presence};
};

QStringList paths(const QList<int> &numbers)
{
    QStringList paths;
    for (const int number : numbers)
        paths.append(QStringLiteral("/a/%1").arg(number));
    return paths;
}

} // namespace

void AssetThumbnailsTest::servesWhatIsInSightFirst()
{
    Pictures pictures;
    const QList<ShelfItem> items = pictures.items(6);
    pictures.thumbnails.want(items, 2, 1);
    QCOMPARE(pictures.source.waiting(), paths({0, 1}));
    pictures.source.serve(Pictures::red());
    pictures.source.serve({});
    QCOMPARE(pictures.source.waiting(), paths({2, 3, 4, 5}));

    // What comes into sight overtakes, also when it was asked for before; what is not wanted any more is not made.
    pictures.thumbnails.want({items[4], items[5], items[3]}, 2, 1);
    QCOMPARE(pictures.source.waiting(), paths({4, 5, 3}));
    pictures.serveAll();
    // Known to have none is known.
    pictures.thumbnails.want(items, 2, 1);
    QCOMPARE(pictures.source.waiting(), paths({2}));
    QVERIFY(pictures.thumbnails.picture(items[1].id).isNull());
    pictures.thumbnails.want({}, 0, 1);
    QVERIFY(pictures.source.waiting().isEmpty());
}

void AssetThumbnailsTest::asksForPlainFilesOnly()
{
    using Kind = FileLookUp::Entry::Kind;
    Pictures pictures;
    QList<ShelfItem> items = pictures.items(5);
    pictures.files.add("/a/0", Kind::Folder);
    pictures.files.add("/a/1", Kind::Special);
    pictures.files.add("/a/2", Kind::Link, "/a/4");
    pictures.files.remove("/a/3");
    items.append({.id = QUuid::createUuid(), .path = QStringLiteral("/a/unknown"), .addedAt = 0});
    pictures.files.add("/a/unknown");
    pictures.clock.advance(std::chrono::seconds(3));
    pictures.find(paths({0, 1, 2, 3, 4}));
    pictures.thumbnails.want(items, items.size(), 1);
    // The one that nobody asked about yet follows when it has been found.
    QCOMPARE(pictures.source.waiting(), paths({4}));
    QTRY_COMPARE(pictures.source.waiting().size(), 2);
    QVERIFY(pictures.source.waiting().contains(QStringLiteral("/a/unknown")));

    AssetThumbnails without(nullptr, pictures.presence);
    without.want(items, items.size(), 1);
    QCOMPARE(without.progress().total, 0);
}

void AssetThumbnailsTest::makesNewOnesWhenFilesOrScaleChange()
{
    Pictures pictures;
    const QList<ShelfItem> items = pictures.items(1);
    const QUuid id = items.first().id;
    pictures.thumbnails.want(items, 1, 1);
    pictures.serveAll();
    const QImage square = pictures.thumbnails.picture(id);
    QCOMPARE(square.size(), QSize(54, 54));
    // The middle of the picture up to its edges, but for the round corners.
    for (const QPoint &point : {QPoint(0, 27), QPoint(53, 27), QPoint(27, 0), QPoint(27, 53), QPoint(3, 3)})
        QCOMPARE(square.pixelColor(point), QColor(Qt::red));
    QCOMPARE(square.pixelColor(0, 0).alpha(), 0);

    pictures.thumbnails.want(items, 1, 2);
    QCOMPARE(pictures.source.pixelSize(), 240);
    pictures.serveAll();
    QCOMPARE(pictures.thumbnails.picture(id).size(), QSize(108, 108));

    pictures.files.remove("/a/0");
    pictures.clock.advance(std::chrono::seconds(3));
    pictures.find(paths({0}));
    QVERIFY(pictures.thumbnails.picture(id).isNull());
    QVERIFY(pictures.source.waiting().isEmpty());
    pictures.files.add("/a/0");
    pictures.clock.advance(std::chrono::seconds(3));
    pictures.find(paths({0}));
    QCOMPARE(pictures.source.waiting(), paths({0}));
}

void AssetThumbnailsTest::tellsHowFarItIs()
{
    using Progress = AssetThumbnails::Progress;
    Pictures pictures;
    const QList<ShelfItem> items = pictures.items(AssetThumbnails::kKept + 40);
    QSignalSpy changes(&pictures.thumbnails, &AssetThumbnails::progressChanged);
    pictures.thumbnails.want(items, 18, 1);
    QCOMPARE(pictures.thumbnails.progress(), (Progress{.done = 0, .total = AssetThumbnails::kKept}));
    pictures.source.serve(Pictures::red());
    QCOMPARE(pictures.thumbnails.progress(), (Progress{.done = 1, .total = AssetThumbnails::kKept}));
    pictures.serveAll();
    QCOMPARE(pictures.thumbnails.progress(), Progress());
    QCOMPARE(changes.size(), AssetThumbnails::kKept + 1);
    // All of those that are kept are kept: nothing is made twice.
    QCOMPARE(pictures.source.count(), AssetThumbnails::kKept);
    pictures.thumbnails.want(items, 24, 1);
    QCOMPARE(pictures.source.count(), AssetThumbnails::kKept);
}

OSTRELLE_TEST(AssetThumbnailsTest)
#include "AssetThumbnailsTest.moc"
