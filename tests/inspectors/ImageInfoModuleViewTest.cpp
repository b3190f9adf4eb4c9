#include "inspectors/ImageInfoModuleView.h"
#include "InspectorsFixture.h"
#include "files/RecentFilesStrip.h"
#include "inspectors/ThumbnailBox.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <optional>

using namespace ostrelle;
using namespace std::chrono_literals;

class ImageInfoModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void wantsTheHeightOfWhatItShows();
    void invitesAndRefuses();
    void showsTheFactsInOrder();
    void leavesOutWhatIsNotKnown();
    void showsThePictureBesideThem();
    void offersImagesToChoose();
    void copiesAllFacts();
    void hasNoKeysForPlaying();
    void arrowKeysReachTheList();
};

namespace {

struct ImageTool : ToolFixture
{
    ImageInfoModuleView view{image, surroundings, context, nullptr};

    void showInfo(const ImageInfo &info)
    {
        const QString path = QStringLiteral("/a/x.png");
        facts.set(path, info);
        showImage(path);
        settle();
        resize(view);
    }
};

} // namespace

void ImageInfoModuleViewTest::wantsTheHeightOfWhatItShows()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    QCOMPARE(fixture.view.wantedBodyHeight(), 154.0 + 106);
    fixture.showImage(fixture.addImage(QStringLiteral("harbour.png")));
    QCOMPARE(fixture.view.wantedBodyHeight(), 186.0 + 82 + 106);
    fixture.view.strip().expansionWanted(true);
    QCOMPARE(fixture.view.wantedBodyHeight(), 460.0);
    fixture.image.recents().clear();
    QCOMPARE(fixture.view.wantedBodyHeight(), 186.0 + 106);
}

void ImageInfoModuleViewTest::invitesAndRefuses()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    QCOMPARE(ImageTool::message(fixture.view), QStringLiteral("Drop an image here"));
    fixture.view.dropFiles({QStringLiteral("/a/horn.wav")});
    fixture.clock.advance(1s);
    QCOMPARE(ImageTool::message(fixture.view), QStringLiteral("That isn't an image"));
    const auto states = fixture.view.findChildren<EmptyStateView *>();
    QCOMPARE(states.last()->accessibleDescription(), QStringLiteral("Try a PNG, JPEG, HEIC, TIFF or RAW file"));
    fixture.clock.advance(2s);
    QCOMPARE(ImageTool::message(fixture.view), QStringLiteral("Drop an image here"));
}

void ImageInfoModuleViewTest::showsTheFactsInOrder()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    fixture.showImage(fixture.addImage(QStringLiteral("harbour.png")));
    fixture.settle();
    QCOMPARE(ImageTool::rows(fixture.view),
             (QStringList{QStringLiteral("Dimensions: 3840 × 2160"), QStringLiteral("Format: PNG"),
                          QStringLiteral("File Size: 11.4 MB"), QStringLiteral("Color Space: sRGB IEC61966-2.1"),
                          QStringLiteral("Bit Depth: 8 bit + alpha"), QStringLiteral("Resolution: 144 DPI")}));
    const auto rows = fixture.view.findChildren<MetadataRow *>();
    QCOMPARE(rows[0]->mapTo(&fixture.view, QPoint()), QPoint(194, 12));
    QCOMPARE(rows[1]->geometry(), QRect(0, 27, 380, 27));
    QCOMPARE(fixture.view.findChild<ThumbnailBox *>()->geometry(), QRect(14, 12, 162, 162));
}

void ImageInfoModuleViewTest::leavesOutWhatIsNotKnown()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    ImageInfo info;
    info.pixelWidth = 1;
    info.pixelHeight = 1;
    info.format = QStringLiteral("JPEG");
    info.hasAlpha = true; // says nothing without a depth
    info.dpi = 0;
    fixture.showInfo(info);
    QCOMPARE(ImageTool::rows(fixture.view),
             (QStringList{QStringLiteral("Dimensions: 1 × 1"), QStringLiteral("Format: JPEG"),
                          QStringLiteral("File Size: Zero KB")}));
    info.bitDepth = 16;
    info.hasAlpha = false;
    info.colorSpace = QStringLiteral("Gray");
    info.dpi = 1;
    fixture.showInfo(info);
    QCOMPARE(ImageTool::rows(fixture.view).mid(3),
             (QStringList{QStringLiteral("Color Space: Gray"), QStringLiteral("Bit Depth: 16 bit"),
                          QStringLiteral("Resolution: 1 DPI")}));
}

void ImageInfoModuleViewTest::showsThePictureBesideThem()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    fixture.showImage(fixture.addImage(QStringLiteral("harbour.png")));
    const auto middle = [&] {
        fixture.settle();
        const auto *box = fixture.view.findChild<ThumbnailBox *>();
        return fixture.view.grab().toImage().pixelColor(box->geometry().center());
    };
    QVERIFY(middle() != QColor(Qt::red));
    QImage thumbnail(240, 135, QImage::Format_RGB32);
    thumbnail.fill(Qt::red);
    // The newest request is the strip's.
    while (fixture.thumbnails.waiting().size() > 1)
        fixture.thumbnails.serve({});
    fixture.thumbnails.serve(thumbnail);
    QCOMPARE(middle(), QColor(Qt::red));
    QCOMPARE(fixture.view.findChild<ThumbnailBox *>()->accessibleName(), QStringLiteral("harbour.png"));
    // At most 146 of the box, and in proportion.
    const QImage drawn = fixture.view.grab().toImage();
    QCOMPARE(drawn.pixelColor(14 + 8 + 1, 12 + 81), QColor(Qt::red));
    QVERIFY(drawn.pixelColor(14 + 6, 12 + 81) != QColor(Qt::red));
    QVERIFY(drawn.pixelColor(14 + 81, 12 + 36) != QColor(Qt::red));
    QCOMPARE(drawn.pixelColor(14 + 81, 12 + 43), QColor(Qt::red));
}

void ImageInfoModuleViewTest::offersImagesToChoose()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    auto *choose = static_cast<QAbstractButton *>(fixture.view.headerActions().first());
    QCOMPARE(choose->toolTip(), QStringLiteral("Choose an image…"));
    choose->click();
    QCOMPARE(fixture.chooser.choice().message, QStringLiteral("Choose an image to inspect."));
    QCOMPARE(fixture.chooser.choice().mimeTypes, QStringList(QStringLiteral("image/*")));
    fixture.chooser.close({});
    QVERIFY(!fixture.image.isRejected());
}

void ImageInfoModuleViewTest::copiesAllFacts()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    fixture.showImage(fixture.addImage(QStringLiteral("harbour.png")));
    fixture.view.menuEntries().first().action();
    QCOMPARE(std::get<QString>(*fixture.clipboard.offer()).section(u'\n', 0, 1),
             QStringLiteral("Dimensions\t3840 × 2160\nFormat\tPNG"));
}

void ImageInfoModuleViewTest::hasNoKeysForPlaying()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    fixture.showImage(fixture.addImage(QStringLiteral("harbour.png")));
    fixture.settle();
    ImageTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), QString());
}

void ImageInfoModuleViewTest::arrowKeysReachTheList()
{
    ImageTool fixture;
    fixture.show(fixture.view);
    const QString first = fixture.addImage(QStringLiteral("first.png"));
    const QString second = fixture.addImage(QStringLiteral("second.png"));
    fixture.showImage(first);
    fixture.showImage(second);
    ImageTool::press(Qt::Key_Down);
    QVERIFY(fixture.view.hasFocus());
    fixture.view.strip().expansionWanted(true);
    fixture.settle();
    ImageTool::press(Qt::Key_Down);
    ImageTool::press(Qt::Key_Down);
    ImageTool::press(Qt::Key_Return);
    QTRY_COMPARE(fixture.facts.waiting(), QStringList(first));
}

OSTRELLE_TEST(ImageInfoModuleViewTest)
#include "ImageInfoModuleViewTest.moc"
