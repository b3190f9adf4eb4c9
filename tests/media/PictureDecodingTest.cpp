#include "MediaFixture.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPdfWriter>
#include <QTest>
#include <QtEndian>

#include <memory>
#include <optional>

using namespace ostrelle;

/// Files made here, through the real helpers, to pixels.
class PictureDecodingTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void commonKindsKeepShapeAndColour_data();
    void commonKindsKeepShapeAndColour();
    void picturesStandUpright_data();
    void picturesStandUpright();
    void embeddedProfilesBecomeSrgb_data();
    void embeddedProfilesBecomeSrgb();
    void alphaIsKept_data();
    void alphaIsKept();
    void drawingsAndDocumentsAreDrawnInTheSizeAskedFor();
    void videoShowsAPictureThatIsNotBlack();
    void songsShowTheirCover();
    void squareIsTheMiddle();
    void copiesBecomePng_data();
    void copiesBecomePng();
    void hostileFilesHaveNoPicture_data();
    void hostileFilesHaveNoPicture();
    void everyTruncationIsSurvived_data();
    void everyTruncationIsSurvived();

private:
    PictureResult pictureOf(const QByteArray &bytes, int side, MediaClient::Shape shape = MediaClient::Shape::Whole);
    PngResult pngOf(const QByteArray &bytes);
    MediaFailure failureOf(const QByteArray &bytes);

    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<MediaClient> m_client;
};

namespace {

constexpr int kPatience = 40000; // the sanitizers' helpers are slow to start

QByteArray chunk(const char *kind, const QByteArray &content)
{
    QByteArray bytes(4, '\0');
    qToBigEndian<quint32>(quint32(content.size()), bytes.data());
    // Readers of thumbnails do not ask for checksums.
    return bytes + kind + content + QByteArray(4, '\0');
}

QByteArray pngHeader(quint32 width, quint32 height, char interlace)
{
    QByteArray header(8, '\0');
    qToBigEndian<quint32>(width, header.data());
    qToBigEndian<quint32>(height, header.data() + 4);
    header += QByteArray("\x08\x06\0\0", 4) + interlace;
    return QByteArray("\x89PNG\r\n\x1a\n") + chunk("IHDR", header);
}

QByteArray ico(const QImage &image)
{
    const QByteArray png = encoded(image, "png");
    QByteArray bytes("\0\0\1\0\1\0", 6);
    bytes += QByteArray("\x40\x40\0\0\1\0\x20\0", 8);
    QByteArray sizes(8, '\0');
    qToLittleEndian<quint32>(quint32(png.size()), sizes.data());
    qToLittleEndian<quint32>(22, sizes.data() + 4);
    return bytes + sizes + png;
}

/// Frames of one brightness each, uncompressed.
QByteArray film(const QList<int> &brightness)
{
    QByteArray bytes("YUV4MPEG2 W64 H48 F1:1 Ip A1:1 C420jpeg\n");
    for (const int value : brightness)
        bytes += "FRAME\n" + QByteArray(64 * 48, char(value)) + QByteArray(2 * 32 * 24, char(128));
    return bytes;
}

/// An ID3v2 tag with a picture in it.
QByteArray tagWith(const QByteArray &cover)
{
    const QByteArray frame = QByteArray("\0image/png\0\3\0", 13) + cover;
    QByteArray size(4, '\0');
    qToBigEndian<quint32>(quint32(frame.size()), size.data());
    const QByteArray body = "APIC" + size + QByteArray(2, '\0') + frame;
    QByteArray tag("ID3\3\0\0", 6);
    for (int shift = 21; shift >= 0; shift -= 7)
        tag += char(body.size() >> shift & 0x7f);
    return tag + body;
}

QByteArray songWith(const QByteArray &cover)
{
    return tagWith(cover) + QByteArray(2000, '\0');
}

QByteArray wavChunk(const char *name, const QByteArray &content)
{
    QByteArray size(4, '\0');
    qToLittleEndian<quint32>(quint32(content.size()), size.data());
    return name + size + content + QByteArray(content.size() % 2, '\0');
}

QByteArray wavWith(const QByteArray &cover)
{
    const QByteArray format("\1\0\1\0\x40\x1f\0\0\x80\x3e\0\0\2\0\x10\0", 16);
    return wavChunk("RIFF", "WAVE" + wavChunk("fmt ", format) + wavChunk("data", QByteArray(1000, '\0')) +
                                wavChunk("id3 ", tagWith(cover)));
}

} // namespace

void PictureDecodingTest::init()
{
    TestBase::init();
    m_home = std::make_unique<TemporaryHome>();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client = std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{helperFolder(), m_home->path()});
}

void PictureDecodingTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    m_home.reset();
}

PictureResult PictureDecodingTest::pictureOf(const QByteArray &bytes, int side, MediaClient::Shape shape)
{
    std::optional<PictureResult> result;
    const MediaRequest request =
        m_client->thumbnailOfBytes(bytes, side, shape, [&result](const PictureResult &answer) { result = answer; });
    (void)QTest::qWaitFor([&result] { return result.has_value(); }, kPatience);
    return result.value_or(MediaFailure::TimedOut);
}

PngResult PictureDecodingTest::pngOf(const QByteArray &bytes)
{
    std::optional<PngResult> result;
    const MediaRequest request = m_client->convertToPng(bytes, [&result](const PngResult &answer) { result = answer; });
    (void)QTest::qWaitFor([&result] { return result.has_value(); }, kPatience);
    return result.value_or(MediaFailure::TimedOut);
}

MediaFailure PictureDecodingTest::failureOf(const QByteArray &bytes)
{
    const PictureResult result = pictureOf(bytes, 64);
    const auto *failure = std::get_if<MediaFailure>(&result);
    return failure ? *failure : MediaFailure::FailedBefore; // which bytes never have
}

void PictureDecodingTest::commonKindsKeepShapeAndColour_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isGray");
    const QImage image = turnable(640, 320);
    for (const char *format : {"png", "jpg", "bmp", "tiff", "webp"})
        QTest::newRow(format) << encoded(image, format, 95) << false;
    QTest::newRow("gray jpg") << encoded(image.convertToFormat(QImage::Format_Grayscale8), "jpg", 95) << true;
    QTest::newRow("16 bits") << encoded(image.convertToFormat(QImage::Format_RGBA64), "png") << false;
    QTest::newRow("palette png") << encoded(image.convertToFormat(QImage::Format_Indexed8), "png") << false;
    QTest::newRow("palette bmp") << encoded(image.convertToFormat(QImage::Format_Indexed8), "bmp") << false;
    QTest::newRow("ico") << ico(image) << false;
}

void PictureDecodingTest::commonKindsKeepShapeAndColour()
{
    QFETCH(QByteArray, bytes);
    const PictureResult result = pictureOf(bytes, 100);
    const QImage image = imageOf(result);
    QCOMPARE(image.size(), QSize(100, 50));
    QCOMPARE(std::get<MediaPicture>(result).sourceWidth, 640);
    QFETCH(bool, isGray);
    const QImage expected = isGray ? turnable(100, 50).convertToFormat(QImage::Format_Grayscale8) : turnable(100, 50);
    for (const QPoint &place : {QPoint(5, 5), QPoint(20, 40), QPoint(80, 25)})
        QVERIFY(isNear(image.pixelColor(place), expected.pixelColor(place)));
}

void PictureDecodingTest::picturesStandUpright_data()
{
    QTest::addColumn<int>("orientation");
    for (int orientation = 1; orientation <= 8; ++orientation)
        QTest::newRow(qPrintable(QString::number(orientation))) << orientation;
}

/// Qt's own reading of the same file is the reference.
void PictureDecodingTest::picturesStandUpright()
{
    QFETCH(int, orientation);
    const QByteArray jpeg = withOrientation(encoded(turnable(320, 160), "jpg", 95), orientation);
    QBuffer buffer;
    buffer.setData(jpeg);
    QImageReader reader(&buffer, "jpg");
    reader.setAutoTransform(true);
    const QImage expected = reader.read();
    QCOMPARE(expected.height() > expected.width(), orientation >= 5);
    const QImage image = imageOf(pictureOf(jpeg, 80));
    QCOMPARE(image.size(), expected.size() / 4);
    for (const QPoint &place : {QPoint(4, 4), QPoint(image.width() - 5, 4), QPoint(4, image.height() - 5),
                                QPoint(image.width() - 5, image.height() - 5)})
        QVERIFY(isNear(image.pixelColor(place), expected.pixelColor(place * 4), 30));
}

void PictureDecodingTest::embeddedProfilesBecomeSrgb_data()
{
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"png", "jpg", "tiff", "webp"})
        QTest::newRow(format) << QByteArray(format);
}

void PictureDecodingTest::embeddedProfilesBecomeSrgb()
{
    QFETCH(QByteArray, format);
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(QColor(120, 180, 90));
    image.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    const QColor expected = image.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixelColor(10, 10);
    QVERIFY(!isNear(image.pixelColor(10, 10), expected, 15));
    const QImage picture = imageOf(pictureOf(encoded(image, format.constData(), 98), 64));
    QVERIFY(isNear(picture.pixelColor(10, 10), expected, 8));
}

void PictureDecodingTest::alphaIsKept_data()
{
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"png", "tiff", "webp"})
        QTest::newRow(format) << QByteArray(format);
}

void PictureDecodingTest::alphaIsKept()
{
    QFETCH(QByteArray, format);
    QImage image(100, 100, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(0, 0, 50, 100, QColor(200, 40, 40, 128));
    const QImage picture = imageOf(pictureOf(encoded(image, format.constData(), 100), 50));
    QVERIFY(isNear(picture.pixelColor(10, 25), QColor(200, 40, 40, 128)));
    QCOMPARE(picture.pixelColor(40, 25).alpha(), 0);
}

void PictureDecodingTest::drawingsAndDocumentsAreDrawnInTheSizeAskedFor()
{
    const QByteArray svg("<?xml version='1.0'?>\n<!-- drawn -->\n<svg xmlns='http://www.w3.org/2000/svg' width='20' "
                         "height='10'><rect width='10' height='10' fill='#f00'/></svg>");
    const QImage drawing = imageOf(pictureOf(svg, 200));
    QCOMPARE(drawing.size(), QSize(200, 100));
    QVERIFY(isNear(drawing.pixelColor(98, 50), Qt::red));
    QCOMPARE(drawing.pixelColor(102, 50).alpha(), 0);

    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        QPainter painter(&writer);
        painter.fillRect(0, 0, writer.width(), writer.height() / 2, Qt::blue);
    }
    const QImage page = imageOf(pictureOf(pdf, 200));
    QCOMPARE(page.height(), 200);
    QVERIFY(isNear(page.pixelColor(page.width() / 2, 60), Qt::blue));
    QVERIFY(isNear(page.pixelColor(page.width() / 2, 150), Qt::white));
}

void PictureDecodingTest::videoShowsAPictureThatIsNotBlack()
{
    const QImage bright = imageOf(pictureOf(film({0, 0, 0, 0, 0, 180, 180, 180, 180, 180}), 64));
    QCOMPARE(bright.size(), QSize(64, 48));
    QVERIFY(isNear(bright.pixelColor(30, 20), QColor(191, 191, 191)));
    const QImage black = imageOf(pictureOf(film({0, 0, 0}), 64));
    QVERIFY(isNear(black.pixelColor(30, 20), Qt::black));
}

void PictureDecodingTest::songsShowTheirCover()
{
    for (const auto &made : {songWith, wavWith}) {
        const QImage cover = imageOf(pictureOf(made(encoded(turnable(300, 300), "png")), 100));
        QCOMPARE(cover.size(), QSize(100, 100));
        QVERIFY(isNear(cover.pixelColor(80, 50), Qt::green));
        QCOMPARE(failureOf(made("no picture at all")), MediaFailure::NoPicture);
    }
}

void PictureDecodingTest::squareIsTheMiddle()
{
    QImage image(300, 100, QImage::Format_RGB32);
    image.fill(Qt::green);
    QPainter(&image).fillRect(100, 0, 100, 100, Qt::red);
    const QImage square = imageOf(pictureOf(encoded(image, "png"), 50, MediaClient::Shape::Square));
    QCOMPARE(square.size(), QSize(50, 50));
    QVERIFY(isNear(square.pixelColor(1, 25), Qt::red));
    QVERIFY(isNear(square.pixelColor(48, 25), Qt::red));
}

void PictureDecodingTest::copiesBecomePng_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("jpg") << withOrientation(encoded(turnable(400, 200), "jpg", 95), 6);
    QTest::newRow("bmp") << encoded(turnable(200, 400), "bmp");
    QTest::newRow("webp") << encoded(turnable(200, 400), "webp", 100);
}

void PictureDecodingTest::copiesBecomePng()
{
    QFETCH(QByteArray, bytes);
    const PngResult result = pngOf(bytes);
    const auto *png = std::get_if<QByteArray>(&result);
    QVERIFY(png);
    const QImage image = QImage::fromData(*png, "png");
    QCOMPARE(image.size(), QSize(200, 400));
    QVERIFY(!image.hasAlphaChannel());
}

void PictureDecodingTest::hostileFilesHaveNoPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("failure");
    const auto row = [](const char *name, const QByteArray &bytes, MediaFailure failure) {
        QTest::newRow(name) << bytes << static_cast<int>(failure);
    };
    const QByteArray zeros = qCompress(QByteArray(40'000'000, '\0'), 9).mid(4);
    row("nothing", {}, MediaFailure::Unsupported);
    row("text", "BMW is no bitmap", MediaFailure::Unsupported);
    row("png of ten thousand million pixels", pngHeader(100'000, 100'000, 0) + chunk("IDAT", zeros),
        MediaFailure::Broken);
    row("png of three thousand million pixels", pngHeader(60'000, 50'000, 0) + chunk("IDAT", zeros),
        MediaFailure::TooLarge);
    row("interlaced png that would fill the memory", pngHeader(20'000, 20'000, 1) + chunk("IDAT", zeros),
        MediaFailure::TooLarge);
    row("png that is packed 1 to 1000 and ends early", pngHeader(20'000, 20'000, 0) + chunk("IDAT", zeros),
        MediaFailure::Broken);
    row("gif without an end", QByteArray("GIF89a\x10\0\x10\0\0\0\0", 13) + QByteArray(4'000'000, '\x21'),
        MediaFailure::Broken);
    row("gif that claims 65535 by 65535", QByteArray("GIF89a\xff\xff\xff\xff\0\0\0,\0\0\0\0\xff\xff\xff\xff\0\2", 24),
        MediaFailure::TooLarge);
    row("tiff with a directory that leads to itself", QByteArray("II*\0\x08\0\0\0\0\0\x08\0\0\0", 14),
        MediaFailure::Broken);
    row("drawing that includes itself",
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><!DOCTYPE a [<!ENTITY b '&b;'>]>&b;</svg>",
        MediaFailure::Broken);
    row("document without pages", "%PDF-1.7\n%%EOF\n", MediaFailure::Broken);
}

void PictureDecodingTest::hostileFilesHaveNoPicture()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, failure);
    QCOMPARE(static_cast<int>(failureOf(bytes)), failure);
}

void PictureDecodingTest::everyTruncationIsSurvived_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QImage image = turnable(64, 64);
    for (const char *format : {"png", "jpg", "bmp", "tiff", "webp"})
        QTest::newRow(format) << encoded(image, format, 95);
    QTest::newRow("ico") << ico(image);
    QTest::newRow("song") << songWith(encoded(image, "png"));
}

/// Cut at many places, and with bytes turned over: any answer is right, but no helper may be lost, which would warn.
void PictureDecodingTest::everyTruncationIsSurvived()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!imageOf(pictureOf(bytes, 16)).isNull());
    int answers = 0;
    std::vector<MediaRequest> requests;
    const auto ask = [&](const QByteArray &spoilt) {
        requests.push_back(m_client->thumbnailOfBytes(spoilt, 16, MediaClient::Shape::Whole,
                                                      [&answers](const PictureResult &) { ++answers; }));
    };
    quint32 random = 1;
    constexpr int kCuts = 60;
    for (int cut = 0; cut < kCuts; ++cut) {
        ask(bytes.left(bytes.size() * cut / kCuts));
        QByteArray turned = bytes;
        for (int i = 0; i < 4; ++i) {
            random = random * 1664525 + 1013904223;
            turned[qsizetype(random >> 8) % qMin<qsizetype>(turned.size(), 600)] = char(random >> 24);
        }
        ask(turned);
    }
    QVERIFY(QTest::qWaitFor([&] { return answers == 2 * kCuts; }, kPatience));
}

OSTRELLE_TEST(PictureDecodingTest)
#include "PictureDecodingTest.moc"
