#include "InspectorsFixture.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

using namespace ostrelle;
using namespace std::chrono_literals;

class ImageInspectorTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void showsTheFactsAndThenTheThumbnail();
    void keepsTheImageWhenAnotherIsRefused();
    void theNewestImageWins();
    void neverShowsAnotherImagesThumbnail();
    void clearingEndsEverything();
};

namespace {

QImage picture(const QColor &color)
{
    QImage image(240, 135, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

void ImageInspectorTest::showsTheFactsAndThenTheThumbnail()
{
    InspectorsFixture fixture;
    const QString path = fixture.addImage(QStringLiteral("harbour.png"));
    fixture.image.load(path);
    QVERIFY(fixture.thumbnails.waiting().isEmpty());
    fixture.facts.answer(path);
    QCOMPARE(fixture.image.inspection().info, InspectorsFixture::imageInfo(path));
    QVERIFY(fixture.image.inspection().thumbnail.isNull());
    QCOMPARE(fixture.image.recents().items().first().summary, QStringLiteral("3840 × 2160 · PNG"));
    QCOMPARE(fixture.ticks(), 1);
    QCOMPARE(fixture.thumbnails.waiting(), QStringList(path));
    QCOMPARE(fixture.thumbnails.pixelSize(), 240);
    fixture.thumbnails.serve(picture(Qt::red));
    QCOMPARE(fixture.image.inspection().thumbnail, picture(Qt::red));
    // Loaded again it keeps its picture until there is a newer one.
    fixture.showImage(path);
    QCOMPARE(fixture.image.inspection().thumbnail, picture(Qt::red));
    fixture.thumbnails.serve({});
    QVERIFY(fixture.image.inspection().thumbnail.isNull());
    QVERIFY(fixture.image.inspection().info);
}

void ImageInspectorTest::keepsTheImageWhenAnotherIsRefused()
{
    InspectorsFixture fixture;
    const QString path = fixture.addImage(QStringLiteral("harbour.png"));
    fixture.showImage(path);
    fixture.thumbnails.serve(picture(Qt::red));
    const ImageInspection shown = fixture.image.inspection();
    for (const char *name : {"/a/horn.wav", "/a/broken.png", "/a/slow.png"}) {
        const QString refused = QString::fromLatin1(name);
        fixture.image.load(refused);
        if (refused.contains(u"slow"))
            fixture.clock.advance(FileInspector::kPatience);
        else if (refused.contains(u"broken"))
            fixture.facts.answer(refused);
        QVERIFY(fixture.image.isRejected());
        QCOMPARE(fixture.image.inspection(), shown);
        fixture.clock.advance(1999ms);
        QVERIFY(fixture.image.isRejected());
        fixture.clock.advance(1ms);
        QVERIFY(!fixture.image.isRejected());
    }
    QCOMPARE(fixture.image.recents().items().size(), 1);
}

void ImageInspectorTest::theNewestImageWins()
{
    InspectorsFixture fixture;
    const QString first = fixture.addImage(QStringLiteral("first.png"));
    const QString second = fixture.addImage(QStringLiteral("second.png"));
    fixture.image.load(first);
    fixture.image.load(second);
    fixture.facts.answerAll();
    QCOMPARE(fixture.image.inspection().path, second);
    QCOMPARE(InspectorsFixture::names(fixture.image.recents()), QStringList(QStringLiteral("second.png")));
    fixture.clock.advance(3s);
    QVERIFY(!fixture.image.isRejected());
}

void ImageInspectorTest::neverShowsAnotherImagesThumbnail()
{
    InspectorsFixture fixture;
    const QString first = fixture.addImage(QStringLiteral("first.png"));
    const QString second = fixture.addImage(QStringLiteral("second.png"));
    fixture.showImage(first);
    fixture.showImage(second);
    QCOMPARE(fixture.thumbnails.waiting(), QStringList(second));
    QVERIFY(fixture.image.inspection().thumbnail.isNull());
    fixture.thumbnails.serve(picture(Qt::blue));
    QCOMPARE(fixture.image.inspection().thumbnail, picture(Qt::blue));
}

void ImageInspectorTest::clearingEndsEverything()
{
    InspectorsFixture fixture;
    const QString path = fixture.addImage(QStringLiteral("harbour.png"));
    fixture.showImage(path);
    fixture.image.load(fixture.addImage(QStringLiteral("other.png")));
    fixture.image.clear();
    QCOMPARE(fixture.image.inspection(), ImageInspection());
    QVERIFY(fixture.facts.waiting().isEmpty());
    QVERIFY(fixture.thumbnails.waiting().isEmpty());
    QCOMPARE(fixture.clock.pendingCount(), 0);
}

OSTRELLE_TEST(ImageInspectorTest)
#include "ImageInspectorTest.moc"
