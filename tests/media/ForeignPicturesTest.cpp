#include "MediaFixture.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QColorSpace>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>
#include <vector>

using namespace ostrelle;

/// Pictures as other programs and cameras write them, through the real helpers.
class ForeignPicturesTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void picturesKeepShapeAndColour_data();
    void picturesKeepShapeAndColour();
    void picturesStandUpright_data();
    void picturesStandUpright();
    void embeddedProfilesBecomeSrgb_data();
    void embeddedProfilesBecomeSrgb();
    void transparencyIsKept();
    void factsAreWhatTheCameraMeans_data();
    void factsAreWhatTheCameraMeans();
    void damagedCopiesAreAnswered_data();
    void damagedCopiesAreAnswered();

private:
    void make(const QString &program, const QString &arguments);
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QByteArray bytesOf(const QString &name) const;
    QImage pictureOf(const QString &name, int side);

    QTemporaryDir m_folder;
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<MediaClient> m_client;
};

namespace {

constexpr int kPatience = 40000; // the sanitizers' helpers are slow to start
const QColor kAdobeColor(120, 180, 90);

/// Left half red, right half green, the top left corner white.
bool isTurnable(const QImage &image)
{
    const int right = image.width() - 6;
    const int bottom = image.height() - 6;
    return isNear(image.pixelColor(5, 5), Qt::white, 30) && isNear(image.pixelColor(5, bottom), Qt::red, 30) &&
           isNear(image.pixelColor(right, 5), Qt::green, 30) && isNear(image.pixelColor(right, bottom), Qt::green, 30);
}

/// What has to be turned by an orientation to be `image`.
QImage heldAs(const QImage &image, int orientation)
{
    const int degrees = orientation == 3 ? 180 : orientation == 6 ? -90 : orientation == 8 ? 90 : 0;
    return image.transformed(QTransform().rotate(degrees));
}

} // namespace

void ForeignPicturesTest::make(const QString &program, const QString &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments.split(u' '));
    QVERIFY2(
        process.waitForFinished(60000) && process.exitCode() == 0,
        qPrintable(program + QStringLiteral(": ") + process.errorString() + QString::fromLocal8Bit(process.readAll())));
}

void ForeignPicturesTest::initTestCase()
{
    const QImage upright = turnable(320, 240);
    QVERIFY(upright.save(path(QStringLiteral("upright.png"))));
    QVERIFY(heldAs(upright, 3).save(path(QStringLiteral("second.png"))));
    writeFile(path(QStringLiteral("turned.jpg")), withOrientation(encoded(heldAs(upright, 6), "jpg", 95), 6));
    QImage adobe(64, 64, QImage::Format_RGB32);
    adobe.fill(kAdobeColor);
    adobe.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    QVERIFY(adobe.save(path(QStringLiteral("adobe.png"))));
    for (const char *name : {"upright", "adobe"}) {
        const QString of = QString::fromLatin1(name);
        make(QStringLiteral("heif-enc"), QStringLiteral("-q 95 -o %1.heic %1.png").arg(of));
        make(QStringLiteral("avifenc"), QStringLiteral("--min 0 --max 5 %1.png %1.avif").arg(of));
        make(QStringLiteral("cjxl"), QStringLiteral("-d 0.5 %1.png %1.jxl").arg(of));
        make(QStringLiteral("convert"), QStringLiteral("%1.png -type TrueColor %1.psd").arg(of));
    }
    make(QStringLiteral("avifenc"), QStringLiteral("--min 0 --max 5 turned.jpg turned.avif"));
    make(QStringLiteral("cjxl"), QStringLiteral("turned.jpg turned.jxl"));
    make(QStringLiteral("convert"), QStringLiteral("-delay 20 upright.png second.png animated.gif"));
    make(QStringLiteral("convert"), QStringLiteral("upright.png -type TrueColor -depth 16 -compress none deep.psd"));
    make(QStringLiteral("convert"), QStringLiteral("upright.png -colorspace CMYK inks.psd"));
    make(QStringLiteral("convert"), QStringLiteral("upright.png -type TrueColor psb:large.psb"));
    make(QStringLiteral("convert"), QStringLiteral("upright.png -alpha set -channel A -evaluate set 50% -type "
                                                   "TrueColorAlpha half.psd"));

    for (const int orientation : {1, 3, 6, 8}) {
        const QImage preview =
            heldAs(turnable(orientation < 6 ? 1600 : 1200, orientation < 6 ? 1200 : 1600), orientation);
        QVERIFY(preview.save(path(QStringLiteral("preview.jpg")), "jpg", 92));
        make(QStringLiteral("python3"), QStringLiteral("%1 preview.jpg %2 %3 %4 .")
                                            .arg(QStringLiteral(OSTRELLE_CAMERA_FILES))
                                            .arg(preview.width())
                                            .arg(preview.height())
                                            .arg(orientation));
    }
}

void ForeignPicturesTest::init()
{
    TestBase::init();
    m_home = std::make_unique<TemporaryHome>();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client = std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{helperFolder(), m_home->path()});
}

void ForeignPicturesTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    m_home.reset();
}

QByteArray ForeignPicturesTest::bytesOf(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage ForeignPicturesTest::pictureOf(const QString &name, int side)
{
    std::optional<PictureResult> result;
    const MediaRequest request = m_client->thumbnail(path(name), side, MediaClient::CacheUse::None,
                                                     [&result](const PictureResult &answer) { result = answer; });
    (void)QTest::qWaitFor([&result] { return result.has_value(); }, kPatience);
    return result ? imageOf(*result) : QImage();
}

void ForeignPicturesTest::picturesKeepShapeAndColour_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"upright.heic", "upright.avif", "upright.jxl", "upright.psd", "deep.psd", "inks.psd",
                             "large.psb", "animated.gif", "dng-1.dng", "cr2-1.cr2", "nef-1.nef", "arw-1.arw"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void ForeignPicturesTest::picturesKeepShapeAndColour()
{
    QFETCH(QString, name);
    const QImage image = pictureOf(name, 80);
    QCOMPARE(image.size(), QSize(80, 60));
    QVERIFY(isTurnable(image));
}

void ForeignPicturesTest::picturesStandUpright_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("avif") << QStringLiteral("turned.avif");
    QTest::newRow("jxl") << QStringLiteral("turned.jxl");
    for (const char *make : {"dng", "cr2", "nef", "arw"}) {
        for (const int orientation : {3, 6, 8}) {
            const QString name = QStringLiteral("%1-%2.%1").arg(QLatin1StringView(make)).arg(orientation);
            QTest::newRow(qPrintable(name)) << name;
        }
    }
}

void ForeignPicturesTest::picturesStandUpright()
{
    QFETCH(QString, name);
    const QImage image = pictureOf(name, 80);
    QVERIFY(!image.isNull());
    QVERIFY(isTurnable(image));
}

void ForeignPicturesTest::embeddedProfilesBecomeSrgb_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"adobe.heic", "adobe.avif", "adobe.jxl", "adobe.psd"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void ForeignPicturesTest::embeddedProfilesBecomeSrgb()
{
    QFETCH(QString, name);
    QImage reference(1, 1, QImage::Format_RGB32);
    reference.fill(kAdobeColor);
    reference.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    reference.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    QVERIFY(!isNear(kAdobeColor, reference.pixelColor(0, 0), 15));
    QVERIFY(isNear(pictureOf(name, 64).pixelColor(10, 10), reference.pixelColor(0, 0), 8));
}

void ForeignPicturesTest::transparencyIsKept()
{
    const QImage image = pictureOf(QStringLiteral("half.psd"), 80);
    QVERIFY(isNear(image.pixelColor(70, 50), QColor(0, 255, 0, 128)));
}

void ForeignPicturesTest::factsAreWhatTheCameraMeans_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("dpi");
    const auto row = [](const char *name, const char *format, const QSize &size, int dpi) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(format) << size << dpi;
    };
    constexpr int kNone = 0;
    // The sensor has a border that is no part of the picture.
    row("dng-1.dng", "DNG", {88, 56}, kNone);
    row("cr2-6.cr2", "CR2", {96, 64}, kNone);
    row("arw-1.arw", "ARW", {96, 64}, kNone);
    // No camera's, though it looks like one.
    row("tif-1.tif", "TIFF", {60, 40}, 300);
}

void ForeignPicturesTest::factsAreWhatTheCameraMeans()
{
    QFETCH(QString, name);
    std::optional<std::variant<ImageInfo, MediaFailure>> result;
    const MediaRequest request = m_client->imageInfo(path(name), [&result](const auto &answer) { result = answer; });
    QVERIFY(QTest::qWaitFor([&result] { return result.has_value(); }, kPatience));
    QVERIFY(std::holds_alternative<ImageInfo>(*result));
    const auto &info = std::get<ImageInfo>(*result);
    QTEST(info.format, "format");
    QTEST(QSize(info.pixelWidth, info.pixelHeight), "size");
    QTEST(info.dpi.value_or(0), "dpi");
    QVERIFY(!pictureOf(name, 40).isNull());
}

void ForeignPicturesTest::damagedCopiesAreAnswered_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"upright.heic", "upright.avif", "upright.jxl", "turned.jxl", "upright.psd", "deep.psd",
                             "animated.gif", "dng-6.dng", "cr2-6.cr2", "nef-6.nef", "arw-6.arw"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

/// Cut at many places, and with bytes turned over at its begin and everywhere: any answer is right, and none takes the
/// time that is allowed to one.
void ForeignPicturesTest::damagedCopiesAreAnswered()
{
    QFETCH(QString, name);
    const QByteArray bytes = bytesOf(name);
    int answers = 0;
    std::vector<MediaRequest> requests;
    const auto ask = [&](const QByteArray &spoilt) {
        requests.push_back(m_client->thumbnailOfBytes(spoilt, 64, MediaClient::Shape::Whole,
                                                      [&answers](const PictureResult &) { ++answers; }));
    };
    quint32 random = 1;
    const auto next = [&random] { return random = random * 1664525 + 1013904223; };
    constexpr int kCuts = 30;
    for (int cut = 0; cut < kCuts; ++cut) {
        ask(bytes.left(bytes.size() * cut / kCuts));
        for (const qsizetype reach : {qMin<qsizetype>(bytes.size(), 800), bytes.size()}) {
            QByteArray turned = bytes;
            for (int i = 0; i < 4; ++i)
                turned[qsizetype(next() >> 8) % reach] = char(next() >> 24);
            ask(turned);
        }
    }
    QVERIFY(QTest::qWaitFor([&] { return answers == 3 * kCuts; }, kPatience));
}

OSTRELLE_TEST(ForeignPicturesTest)
#include "ForeignPicturesTest.moc"
