#include "MediaFixture.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/DesktopThumbnails.h"
#include "media_client/MediaClient.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTest>

#include <memory>
#include <optional>

using namespace ostrelle;

/// The desktop's cache, as other programs would read and write it.
class DesktopThumbnailsTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void pathsBecomeTheDesktopsUris();
    void whatIsMadeIsThereForOtherPrograms();
    void linkHasTheThumbnailOfWhatItLeadsTo();
    void thumbnailsOfOtherProgramsAreUsed();
    void spoiltThumbnailIsMadeAgain();
    void failuresAreRememberedUntilTheFileChanges();
    void missingHelpersAreNoFaultOfTheFile();

private:
    PictureResult ask(const QString &path, int side, MediaClient::Links links = MediaClient::Links::Refuse);
    QString cached(const QString &kind, const QString &path) const;
    void setModified(const QString &path, qint64 seconds);
    void writeThumbnail(const QString &place, const QString &of, qint64 modified, const QColor &colour);

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<MediaClient> m_client;
};

namespace {

constexpr qint64 kTime = 1'600'000'000;

} // namespace

void DesktopThumbnailsTest::init()
{
    TestBase::init();
    m_home = std::make_unique<TemporaryHome>();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client = std::make_unique<MediaClient>(
        *m_scheduler, MediaClient::Places{helperFolder(), m_home->path(QStringLiteral("thumbnails"))});
}

void DesktopThumbnailsTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    m_home.reset();
}

PictureResult DesktopThumbnailsTest::ask(const QString &path, int side, MediaClient::Links links)
{
    std::optional<PictureResult> result;
    const MediaRequest request = m_client->thumbnail(
        path, side, MediaClient::CacheUse::ReadAndFill, [&result](const PictureResult &answer) { result = answer; },
        links);
    (void)QTest::qWaitFor([&result] { return result.has_value(); }, 30000);
    return result.value_or(MediaFailure::TimedOut);
}

QString DesktopThumbnailsTest::cached(const QString &kind, const QString &path) const
{
    const QByteArray digest = QCryptographicHash::hash(fileUri(path), QCryptographicHash::Md5).toHex();
    return m_home->path(QStringLiteral("thumbnails/%1/%2.png").arg(kind, QString::fromLatin1(digest)));
}

void DesktopThumbnailsTest::setModified(const QString &path, qint64 seconds)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(seconds), QFileDevice::FileModificationTime));
}

void DesktopThumbnailsTest::writeThumbnail(const QString &place, const QString &of, qint64 modified,
                                           const QColor &colour)
{
    QImage image(128, 64, QImage::Format_ARGB32);
    image.fill(colour);
    image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(fileUri(of)));
    image.setText(QStringLiteral("Thumb::MTime"), QString::number(modified));
    writeFile(place, encoded(image, "png"));
}

void DesktopThumbnailsTest::pathsBecomeTheDesktopsUris()
{
    // As g_filename_to_uri() has them.
    QCOMPARE(fileUri(QStringLiteral("/a b/%#?[]{}^`|\\\"<>;~-_.!$&'()*+,=:@ä")),
             QByteArray("file:///a%20b/%25%23%3F%5B%5D%7B%7D%5E%60%7C%5C%22%3C%3E%3B~-_.!$&'()*+,=:@%C3%A4"));
}

void DesktopThumbnailsTest::whatIsMadeIsThereForOtherPrograms()
{
    const QString path = m_home->path(QStringLiteral("picture.jpg"));
    writeFile(path, encoded(turnable(1000, 500), "jpg"));
    setModified(path, kTime);
    QCOMPARE(imageOf(ask(path, 240)).size(), QSize(240, 120));
    const QString thumbnail = cached(QStringLiteral("large"), path);
    QVERIFY(QTest::qWaitFor([&thumbnail] { return QFile::exists(thumbnail); }));
    const QImage image(thumbnail);
    QCOMPARE(image.size(), QSize(256, 128));
    QCOMPARE(image.text(QStringLiteral("Thumb::URI")), QString::fromLatin1(fileUri(path)));
    QCOMPARE(image.text(QStringLiteral("Thumb::MTime")), QString::number(kTime));
    QVERIFY(isNear(image.pixelColor(200, 64), Qt::green));
    const auto kOnlyOwner =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser | QFileDevice::WriteUser;
    QCOMPARE(QFileInfo(thumbnail).permissions(), kOnlyOwner);
    QCOMPARE(QFileInfo(QFileInfo(thumbnail).path()).permissions(),
             kOnlyOwner | QFileDevice::ExeOwner | QFileDevice::ExeUser);
    QCOMPARE(QDir(QFileInfo(thumbnail).path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void DesktopThumbnailsTest::linkHasTheThumbnailOfWhatItLeadsTo()
{
    const QString path = m_home->path(QStringLiteral("picture.jpg"));
    const QString link = m_home->path(QStringLiteral("link.jpg"));
    writeFile(path, encoded(turnable(1000, 500), "jpg"));
    QVERIFY(QFile::link(path, link));
    QCOMPARE(std::get<MediaFailure>(ask(link, 100)), MediaFailure::NotAFile);
    QCOMPARE(imageOf(ask(link, 100, MediaClient::Links::Follow)).size(), QSize(100, 50));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(cached(QStringLiteral("normal"), path)); }));
    QVERIFY(!QFile::exists(cached(QStringLiteral("normal"), link)));
    // A thumbnail has none, by whatever name.
    const QString toThumbnail = m_home->path(QStringLiteral("to.png"));
    QVERIFY(QFile::link(cached(QStringLiteral("normal"), path), toThumbnail));
    QVERIFY(!imageOf(ask(toThumbnail, 100, MediaClient::Links::Follow)).isNull());
    m_client.reset(); // what it writes is written
    const QDir made(QFileInfo(cached(QStringLiteral("normal"), path)).path());
    QCOMPARE(made.entryList(QDir::Files).size(), 1);
}

void DesktopThumbnailsTest::thumbnailsOfOtherProgramsAreUsed()
{
    const QString path = m_home->path(QStringLiteral("picture.png"));
    writeFile(path, encoded(turnable(100, 50), "png"));
    setModified(path, kTime);
    writeThumbnail(cached(QStringLiteral("x-large"), path), path, kTime, Qt::blue);
    QVERIFY(isNear(imageOf(ask(path, 100)).pixelColor(10, 40), Qt::blue));

    setModified(path, kTime + 1);
    QVERIFY2(isNear(imageOf(ask(path, 100)).pixelColor(10, 40), Qt::red), "the thumbnail is of an earlier state");
    writeThumbnail(cached(QStringLiteral("large"), path), m_home->path(QStringLiteral("other")), kTime + 1, Qt::blue);
    QVERIFY2(isNear(imageOf(ask(path, 200)).pixelColor(10, 40), Qt::red), "the thumbnail is of another file");
}

void DesktopThumbnailsTest::spoiltThumbnailIsMadeAgain()
{
    const QString path = m_home->path(QStringLiteral("picture.png"));
    writeFile(path, encoded(turnable(100, 50), "png"));
    setModified(path, kTime);
    const QString thumbnail = cached(QStringLiteral("normal"), path);
    writeThumbnail(thumbnail, path, kTime, Qt::blue);
    QFile file(thumbnail);
    QVERIFY(file.resize(file.size() - 60));
    QVERIFY(isNear(imageOf(ask(path, 100)).pixelColor(10, 40), Qt::red));
    QVERIFY(QTest::qWaitFor([&thumbnail] { return !QImage(thumbnail).isNull(); }));
}

void DesktopThumbnailsTest::failuresAreRememberedUntilTheFileChanges()
{
    const QString path = m_home->path(QStringLiteral("picture.png"));
    writeFile(path, encoded(turnable(100, 50), "png").left(60));
    setModified(path, kTime);
    QCOMPARE(std::get<MediaFailure>(ask(path, 100)), MediaFailure::Broken);
    QVERIFY(QTest::qWaitFor([this, &path] {
        const PictureResult again = ask(path, 100);
        return std::get<MediaFailure>(again) == MediaFailure::FailedBefore;
    }));
    writeFile(path, encoded(turnable(100, 50), "png"));
    setModified(path, kTime + 1);
    QVERIFY(!imageOf(ask(path, 100)).isNull());
}

/// As while the program's files are replaced by an update.
void DesktopThumbnailsTest::missingHelpersAreNoFaultOfTheFile()
{
    const QString path = m_home->path(QStringLiteral("picture.png"));
    writeFile(path, encoded(turnable(100, 50), "png"));
    const auto startClient = [this](const QString &helpers) {
        m_client = std::make_unique<MediaClient>(
            *m_scheduler, MediaClient::Places{helpers, m_home->path(QStringLiteral("thumbnails"))});
    };
    QTest::ignoreMessage(QtWarningMsg, "a media helper could not be reached");
    startClient(m_home->path());
    QCOMPARE(std::get<MediaFailure>(ask(path, 100)), MediaFailure::HelperMissing);
    startClient(helperFolder()); // what the other one had to write is written
    QVERIFY(!imageOf(ask(path, 100)).isNull());
}

OSTRELLE_TEST(DesktopThumbnailsTest)
#include "DesktopThumbnailsTest.moc"
