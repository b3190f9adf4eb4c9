#include "files/MediaThumbnailSource.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>

#include <optional>

using namespace ostrelle;

/// Before the real helpers.
class MediaThumbnailSourceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void givesPicturesOrNone();
    void answersOnlyTheLiving();

private:
    TemporaryHome m_home;
    SystemTaskScheduler m_scheduler;
    MediaClient m_client{m_scheduler, {QCoreApplication::applicationDirPath(), m_home.path(QStringLiteral("cache"))}};
    MediaThumbnailSource m_source{m_client, MediaClient::Links::Refuse};
};

void MediaThumbnailSourceTest::givesPicturesOrNone()
{
    QImage picture(200, 100, QImage::Format_ARGB32);
    picture.fill(QColor(250, 120, 20, 128));
    const QString path = m_home.path(QStringLiteral("a.png"));
    QVERIFY(picture.save(path));
    std::optional<QImage> shown;
    const ThumbnailRequest request = m_source.request(path, 64, this, [&](const QImage &image) { shown = image; });
    QVERIFY(!shown);
    QTRY_VERIFY_WITH_TIMEOUT(shown, 20'000);
    QCOMPARE(shown->size(), QSize(64, 32));
    const QColor colour = shown->pixelColor(32, 16);
    QCOMPARE(colour.alpha(), 128);
    QVERIFY(std::abs(colour.red() - 250) < 4 && std::abs(colour.green() - 120) < 4 && std::abs(colour.blue() - 20) < 4);

    QFile text(m_home.path(QStringLiteral("b.txt")));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
    text.close();
    std::optional<QImage> none;
    const ThumbnailRequest other =
        m_source.request(text.fileName(), 64, this, [&](const QImage &image) { none = image; });
    QTRY_VERIFY_WITH_TIMEOUT(none, 20'000);
    QVERIFY(none->isNull());
}

void MediaThumbnailSourceTest::answersOnlyTheLiving()
{
    const QString path = m_home.path(QStringLiteral("missing.png"));
    int answers = 0;
    const auto count = [&](const QImage &) { ++answers; };
    auto gone = std::make_unique<QObject>();
    const ThumbnailRequest ofGone = m_source.request(path, 64, gone.get(), count);
    gone.reset();
    ThumbnailRequest cancelled = m_source.request(path, 64, this, count);
    cancelled.cancel();
    bool isAnswered = false;
    const ThumbnailRequest last = m_source.request(path, 64, this, [&](const QImage &) { isAnswered = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isAnswered && m_client.pendingCount() == 0, 20'000);
    QCOMPARE(answers, 0);
}

OSTRELLE_TEST(MediaThumbnailSourceTest)
#include "MediaThumbnailSourceTest.moc"
