#include "MediaFixture.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "media_helper/ByteSource.h"
#include "media_helper/ImageFacts.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QColorSpace>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <memory>
#include <optional>

using namespace ostrelle;

namespace {

constexpr int kLongestWait = 40000; // the sanitizers' helpers are slow to start

/// What is expected of a file, on one line: "60x40 PNG, sRGB, 8 bit + alpha, 72 DPI".
QString summaryOf(const ImageInfo &info)
{
    QString text = QStringLiteral("%1x%2 %3").arg(info.pixelWidth).arg(info.pixelHeight).arg(info.format);
    if (info.colorSpace)
        text += QStringLiteral(", ") + *info.colorSpace;
    if (info.bitDepth)
        text += QStringLiteral(", %1 bit").arg(*info.bitDepth);
    if (info.hasAlpha)
        text += QStringLiteral(" + alpha");
    if (info.dpi)
        text += QStringLiteral(", %1 DPI").arg(*info.dpi);
    return text;
}

/// Counts what is read of endless zeros behind a begin.
class CountingSource final : public ByteSource
{
public:
    CountingSource(QByteArray begin, std::uint64_t size)
        : m_begin(std::move(begin))
        , m_size(size)
    {
    }
    std::uint64_t size() const override { return m_size; }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override
    {
        if (offset >= m_size)
            return 0;
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), m_size - offset));
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint64_t at = offset + i;
            buffer[i] = at < std::uint64_t(m_begin.size()) ? std::uint8_t(m_begin[qsizetype(at)]) : 0;
        }
        bytesRead += count;
        return count;
    }
    std::uint64_t bytesRead = 0;

private:
    QByteArray m_begin;
    std::uint64_t m_size;
};

} // namespace

/// Files made here by other programs, through the real helpers, to facts.
class ImageFactsTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tellsWhatAFileWasMadeOf_data();
    void tellsWhatAFileWasMadeOf();
    void namesTheEmbeddedProfile_data();
    void namesTheEmbeddedProfile();
    void believesTheContentNotTheName();
    void readsNoMoreThanHeaders();
    void survivesDamage_data();
    void survivesDamage();
    void refusesWhatIsNoImage_data();
    void refusesWhatIsNoImage();

private:
    QString path(const QString &name) const { return m_home->path() + QLatin1Char('/') + name; }
    bool make(const QString &program, const QStringList &arguments);
    std::optional<ImageInfo> ask(const QString &path);

    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<MediaClient> m_client;
};

void ImageFactsTest::init()
{
    TestBase::init();
    m_home = std::make_unique<TemporaryHome>();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client =
        std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{helperFolder(), path(QStringLiteral("c"))});
}

void ImageFactsTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    m_home.reset();
}

bool ImageFactsTest::make(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_home->path());
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

std::optional<ImageInfo> ImageFactsTest::ask(const QString &file)
{
    std::optional<std::variant<ImageInfo, MediaFailure>> answer;
    const MediaRequest request = m_client->imageInfo(file, [&](const auto &result) { answer = result; });
    const bool isAnswered = QTest::qWaitFor([&] { return answer.has_value(); }, kLongestWait);
    if (!isAnswered || !std::holds_alternative<ImageInfo>(*answer))
        return std::nullopt;
    return std::get<ImageInfo>(*answer);
}

void ImageFactsTest::tellsWhatAFileWasMadeOf_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("arguments"); ///< the last is the file
    QTest::addColumn<QString>("expected");
    const QString inch = QStringLiteral(" -units PixelsPerInch -density ");
    const auto row = [](const char *name, const QString &arguments, const char *expected) {
        QTest::newRow(name) << QStringLiteral("convert")
                            << QStringLiteral("-size 60x40 gradient:red-blue -depth 8 ") + arguments
                            << QString::fromUtf8(expected);
    };
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    row("png", inch + s("300 a.png"), "60x40 PNG, RGB, 8 bit, 300 DPI");
    row("png of 16 bits with alpha", s("-depth 16 -alpha set -channel A -evaluate set 50% +channel PNG64:a.png"),
        "60x40 PNG, RGB, 16 bit + alpha");
    row("png in gray", s("-colorspace gray -depth 8 a.png"), "60x40 PNG, Gray, 8 bit");
    row("png of one bit", s("-monochrome -define png:bit-depth=1 -define png:color-type=0 a.png"),
        "60x40 PNG, Gray, 1 bit");
    row("png with a palette", s("-colors 16 PNG8:a.png"), "60x40 PNG, RGB, 8 bit");
    row("png with a transparent colour in its palette", s("-transparent red -colors 16 PNG8:a.png"),
        "60x40 PNG, RGB, 8 bit + alpha");
    row("jpeg", inch + s("72 a.jpg"), "60x40 JPEG, RGB, 8 bit, 72 DPI");
    row("jpeg, dots per centimetre", s("-units PixelsPerCentimeter -density 40 a.jpg"),
        "60x40 JPEG, RGB, 8 bit, 102 DPI");
    row("jpeg without a unit", s("-units Undefined -density 3 a.jpg"), "60x40 JPEG, RGB, 8 bit");
    row("jpeg in gray", s("-colorspace gray a.jpg"), "60x40 JPEG, Gray, 8 bit");
    row("jpeg in inks, progressive", s("-colorspace cmyk -interlace plane a.jpg"), "60x40 JPEG, CMYK, 8 bit");
    row("gif", s("a.gif"), "60x40 GIF, RGB, 8 bit");
    row("gif with a hole", s("-transparent red a.gif"), "60x40 GIF, RGB, 8 bit + alpha");
    row("webp", s("a.webp"), "60x40 WEBP, RGB, 8 bit");
    row("webp with alpha", s("-alpha set -channel A -evaluate set 50% +channel a.webp"),
        "60x40 WEBP, RGB, 8 bit + alpha");
    row("tiff", inch + s("71.5 a.tif"), "60x40 TIFF, RGB, 8 bit, 72 DPI");
    row("tiff of 16 bits, per centimetre", s("-depth 16 -units PixelsPerCentimeter -density 100 a.tif"),
        "60x40 TIFF, RGB, 16 bit, 254 DPI");
    row("tiff in inks with alpha", s("-colorspace cmyk -alpha set -channel A -evaluate set 50% +channel a.tif"),
        "60x40 TIFF, CMYK, 8 bit + alpha");
    row("big tiff", s("TIFF64:a.tif"), "60x40 TIFF, RGB, 8 bit");
    row("tiff of several pages", s("( -size 5x5 xc:red ) a.tif"), "60x40 TIFF, RGB, 8 bit");
    row("bmp", inch + s("96 BMP3:a.bmp"), "60x40 BMP, RGB, 8 bit, 96 DPI");
    row("ico", s("-resize 32x32! a.ico"), "32x32 ICO, RGB, 8 bit + alpha");
    row("psd", inch + s("150 a.psd"), "60x40 PSD, RGB, 8 bit, 150 DPI");
    row("psd in inks of 16 bits", inch + s("72 -colorspace cmyk -depth 16 a.psd"), "60x40 PSD, CMYK, 16 bit, 72 DPI");
    row("ppm", s("a.ppm"), "60x40 PPM, RGB, 8 bit");
    row("pgm of 16 bits", s("-colorspace gray -depth 16 a.pgm"), "60x40 PGM, Gray, 16 bit");
    row("pbm", s("-monochrome a.pbm"), "60x40 PBM, Gray, 1 bit");
    row("pam", s("-alpha set -channel A -evaluate set 50% +channel a.pam"), "60x40 PAM, RGB, 8 bit + alpha");
    row("pfm", s("a.pfm"), "60x40 PFM, RGB, 32 bit");
    row("hdr", s("a.hdr"), "60x40 HDR, RGB");
    row("tga with alpha", s("-alpha set -channel A -evaluate set 50% +channel a.tga"), "60x40 TGA, RGB, 8 bit + alpha");
    row("jpeg 2000", s("-depth 16 a.jp2"), "60x40 JP2, RGB, 16 bit");
    row("jpeg 2000, bare", s("-colorspace gray a.j2k"), "60x40 JP2, Gray, 8 bit");
    QTest::newRow("tiled tiff") << "vips" << s("black a.tif[tile,compression=lzw] 300 200 --bands 3")
                                << "300x200 TIFF, RGB, 8 bit, 25 DPI";
    QTest::newRow("exr") << "ffmpeg" << s("-v error -i source.png -pix_fmt gbrapf32le a.exr")
                         << "60x40 EXR, RGB, 32 bit + alpha";
    QTest::newRow("tiff of floats") << "vips" << s("cast source.png a.tif float") << "60x40 TIFF, RGB, 32 bit, 96 DPI";
    QTest::newRow("heic") << "heif-enc" << s("-o a.heic source.png") << "60x40 HEIC, RGB, 8 bit";
    QTest::newRow("avif") << "avifenc" << s("--depth 10 source.png a.avif") << "60x40 AVIF, RGB, 10 bit";
    QTest::newRow("jpeg xl") << "cjxl" << s("source.png a.jxl") << "60x40 JXL, RGB, 8 bit";
    QTest::newRow("svg") << "cp" << s("source.svg a.svg") << "192x100 SVG, RGB + alpha";
    QTest::newRow("packed svg") << "sh" << s("-c gzip<source.svg>a.svgz") << "192x100 SVG, RGB + alpha";
}

void ImageFactsTest::tellsWhatAFileWasMadeOf()
{
    QFETCH(QString, program);
    QFETCH(QString, arguments);
    QVERIFY(turnable(60, 40).save(path(QStringLiteral("source.png"))));
    writeFile(
        path(QStringLiteral("source.svg")),
        "<?xml version='1.0'?>\n<!-- drawn --><svg xmlns='http://www.w3.org/2000/svg' width='2in' height='100'/>");
    const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto made = std::find_if(words.rbegin(), words.rend(),
                                   [](const QString &word) { return word.contains(QLatin1String("a.")); });
    QVERIFY2(make(program, words), qPrintable(program));
    const QString file = path(made->mid(made->indexOf(QLatin1String("a."))).section(QLatin1Char('['), 0, 0));
    const auto info = ask(file);
    QVERIFY(info.has_value());
    QTEST(summaryOf(*info), "expected");
    QCOMPARE(info->byteSize, QFileInfo(file).size());
    QCOMPARE(info->name, QFileInfo(file).fileName());
}

void ImageFactsTest::namesTheEmbeddedProfile_data()
{
    QTest::addColumn<QString>("name");
    for (const char *kind : {"a.png", "a.jpg", "a.tif", "a.webp", "a.psd", "a.gif"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void ImageFactsTest::namesTheEmbeddedProfile()
{
    QFETCH(QString, name);
    QImage image = turnable(60, 40);
    image.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    writeFile(path(QStringLiteral("adobe.icc")), image.colorSpace().iccProfile());
    QVERIFY(turnable(60, 40).save(path(QStringLiteral("source.png"))));
    QVERIFY(make(QStringLiteral("convert"),
                 {QStringLiteral("source.png"), QStringLiteral("-profile"), QStringLiteral("adobe.icc"), name}));
    const auto info = ask(path(name));
    QVERIFY(info.has_value());
    QCOMPARE(info->colorSpace, QStringLiteral("Adobe RGB"));
}

void ImageFactsTest::believesTheContentNotTheName()
{
    writeFile(path(QStringLiteral("photo.png")), encoded(turnable(60, 40), "jpg"));
    const auto mislabelled = ask(path(QStringLiteral("photo.png")));
    QVERIFY(mislabelled.has_value());
    QCOMPARE(mislabelled->format, QStringLiteral("JPEG"));

    // As it is stored: the camera was held upright.
    writeFile(path(QStringLiteral("turned.jpg")), withOrientation(encoded(turnable(60, 40), "jpg"), 6));
    const auto turned = ask(path(QStringLiteral("turned.jpg")));
    QVERIFY(turned.has_value());
    QCOMPARE(turned->pixelWidth, 60);
}

void ImageFactsTest::readsNoMoreThanHeaders()
{
    constexpr std::uint64_t kHuge = std::uint64_t(2) << 30U;
    constexpr std::uint64_t kMost = 1U << 20U;
    const QImage picture = turnable(600, 400);
    const struct
    {
        ReadImageFacts *read;
        QByteArray bytes;
    } files[]{{readJpegFacts, encoded(picture, "jpg")},  {readPngFacts, encoded(picture, "png")},
              {readBmpFacts, encoded(picture, "bmp")},   {readTiffFacts, encoded(picture, "tiff")},
              {readWebPFacts, encoded(picture, "webp")}, {readPnmFacts, encoded(picture, "ppm")}};
    for (const auto &file : files) {
        CountingSource source(file.bytes, kHuge);
        const auto facts = file.read(source);
        QVERIFY(facts.has_value());
        QCOMPARE(facts->width, 600);
        QVERIFY2(source.bytesRead <= kMost, qPrintable(QString::number(source.bytesRead)));
    }
}

void ImageFactsTest::survivesDamage_data()
{
    QTest::addColumn<QString>("name");
    for (const char *kind : {"a.png", "a.jpg", "a.gif", "a.webp", "a.tif", "a.bmp", "a.psd", "a.exr", "a.tga", "a.jp2"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

/// Each reader in this process, so that the sanitizers see what it does.
void ImageFactsTest::survivesDamage()
{
    QFETCH(QString, name);
    QVERIFY(turnable(60, 40).save(path(QStringLiteral("source.png"))));
    QVERIFY(make(QStringLiteral("convert"), {QStringLiteral("source.png"), name}));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    ReadImageFacts *const readers[]{readPngFacts,  readJpegFacts, readGifFacts, readWebPFacts,
                                    readTiffFacts, readBmpFacts,  readPsdFacts, readExrFacts,
                                    readTgaFacts,  readPnmFacts,  readHdrFacts, readIcoFacts};
    const auto readAll = [&](const QByteArray &bytes) {
        for (ReadImageFacts *read : readers) {
            MemorySource source({reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())});
            read(source);
        }
    };
    for (qsizetype size = 0; size < std::min<qsizetype>(whole.size(), 400); ++size)
        readAll(whole.left(size));
    quint32 random = 1;
    for (int i = 0; i < 500; ++i) {
        QByteArray bytes = whole.left(4000);
        for (int flips = 0; flips < 3; ++flips) {
            random = random * 1664525U + 1013904223U;
            bytes[qsizetype(random >> 8U) % std::min<qsizetype>(bytes.size(), 300)] = char(random & 0xffU);
        }
        readAll(bytes);
    }
}

void ImageFactsTest::refusesWhatIsNoImage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray endless = QByteArray("\xff\xd8", 2);
    for (int i = 0; i < 1000; ++i)
        endless += QByteArray("\xff\xe5\0\x10", 4) + QByteArray(14, 'x');
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("BMP, GIF and PNG are kinds of images.");
    QTest::newRow("only a mark") << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("a picture without a width") << QByteArray("P6\n0 10\n255\n");
    QTest::newRow("a picture of minus pixels") << QByteArray("P6\n-5 10\n255\n");
    QTest::newRow("more pixels than a number") << QByteArray("P6\n99999999999999999999 10\n255\n");
    QTest::newRow("markers without a picture") << endless;
    QTest::newRow("a drawing of ten to the ninth")
        << QByteArray("<!DOCTYPE svg [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
                      "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'><!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'>"
                      "<!ENTITY e '&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;'><!ENTITY f '&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;'>"
                      "<!ENTITY g '&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;'><!ENTITY h '&g;&g;&g;&g;&g;&g;&g;&g;&g;&g;'>]>"
                      "<svg xmlns='http://www.w3.org/2000/svg'><text>&h;</text></svg>");
}

void ImageFactsTest::refusesWhatIsNoImage()
{
    QFETCH(QByteArray, bytes);
    writeFile(path(QStringLiteral("a.png")), bytes);
    QVERIFY(!ask(path(QStringLiteral("a.png"))));
}

OSTRELLE_TEST(ImageFactsTest)
#include "ImageFactsTest.moc"
