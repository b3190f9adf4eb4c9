#include "MediaFixture.h"

#include "media_client/AudioInfo.h"
#include "media_client/ImageInfo.h"
#include "media_client/MediaClient.h"
#include "media_common/HelperProtocol.h"
#include "media_helper/FileKind.h"
#include "support/ManualTaskScheduler.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <array>
#include <cstring>
#include <optional>
#include <random>
#include <vector>

using namespace ostrelle;
using namespace std::chrono_literals;

/// A few seconds of what nobody thought of: sound input with parts replaced, cut and repeated, always the same ones.
/// The sanitizers watch.
class MutationTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void anyAnswerOfAHelperIsSurvived();
    void anyObjectOfFactsIsSurvived();
    void anyBeginOfAFileIsSurvived();
};

namespace {

class Mutator
{
public:
    quint32 number(quint32 limit) { return static_cast<quint32>(m_random() % limit); }
    /// At the edges of what a field can hold, or anything.
    quint32 interesting()
    {
        constexpr std::array<quint32, 10> kEdges{0, 1, 7, 8, 9, 256, 0x10000, 0x7fffffff, 0x80000000, 0xffffffff};
        const quint32 choice = number(kEdges.size() + 1);
        return choice < kEdges.size() ? kEdges.at(choice) : static_cast<quint32>(m_random());
    }
    void mutate(QByteArray &bytes)
    {
        for (quint32 i = number(4); i > 0 && !bytes.isEmpty(); --i) {
            const auto place = static_cast<qsizetype>(number(static_cast<quint32>(bytes.size())));
            switch (number(4)) {
            case 0:
                bytes[place] = static_cast<char>(number(256));
                break;
            case 1:
                bytes.truncate(place);
                break;
            case 2:
                bytes.insert(place, bytes.mid(place, 1 + number(40)));
                break;
            default:
                bytes.remove(place, 1 + number(8));
            }
        }
    }

private:
    std::mt19937 m_random{1};
};

/// Helpers are lost here all the time, which is said once for each.
class LossesUnsaid
{
public:
    LossesUnsaid()
        : m_before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    {
    }
    ~LossesUnsaid() { qInstallMessageHandler(m_before); }
    LossesUnsaid(const LossesUnsaid &) = delete;
    LossesUnsaid &operator=(const LossesUnsaid &) = delete;

private:
    QtMessageHandler m_before;
};

constexpr quint32 kSide = 8;

/// A picture of eight by eight, with some fields of its header and then of its bytes changed.
QByteArray answer(Mutator &mutator)
{
    HelperAnswer header;
    header.width = header.height = kSide;
    header.sourceWidth = header.sourceHeight = 100;
    header.byteSize = 4 * kSide * kSide;
    QByteArray bytes(reinterpret_cast<const char *>(&header), sizeof header);
    // The first field says that it is an answer at all.
    for (quint32 i = mutator.number(3); i > 0; --i) {
        const quint32 value = mutator.interesting();
        const auto field = 1 + mutator.number(sizeof header / sizeof value - 1);
        std::memcpy(bytes.data() + field * sizeof value, &value, sizeof value);
    }
    bytes += QByteArray(4 * kSide * kSide, '\x7f');
    if (mutator.number(3) == 0)
        mutator.mutate(bytes);
    return bytes;
}

} // namespace

void MutationTest::anyAnswerOfAHelperIsSurvived()
{
    const TemporaryHome home;
    ManualTaskScheduler scheduler;
    MediaClient client(scheduler, MediaClient::Places{helperFolder() + QStringLiteral("/stand-in"), home.path()});
    const LossesUnsaid unsaid;
    Mutator mutator;
    constexpr int kAnswers = 400;
    int answers = 0;
    int pictures = 0;
    bool isSound = true;
    for (int i = 0; i < kAnswers; ++i) {
        writeFile(home.path(QStringLiteral("file")), "say " + answer(mutator));
        const MediaRequest request = client.thumbnail(
            home.path(QStringLiteral("file")), kSide, MediaClient::CacheUse::None, [&](const PictureResult &result) {
                ++answers;
                const auto *picture = std::get_if<MediaPicture>(&result);
                if (!picture)
                    return;
                ++pictures;
                isSound = isSound && picture->width >= 1 && picture->width <= int(kSide) && picture->height >= 1 &&
                          picture->height <= int(kSide) &&
                          picture->pixels.size() == 4 * picture->width * picture->height;
            });
        QVERIFY(QTest::qWaitFor([&] {
            scheduler.advance(0s);
            return answers == i + 1;
        }));
        QVERIFY(isSound);
    }
    // Neither is everything refused nor everything believed.
    QVERIFY(pictures > kAnswers / 10 && pictures < kAnswers * 9 / 10);
}

void MutationTest::anyObjectOfFactsIsSurvived()
{
    const QByteArray audio(
        R"({"format":"FLAC","duration":225.5,"sampleRate":44100,"channels":2,"bitDepth":16,"bpm":128})");
    const QByteArray image(
        R"({"format":"PNG","pixelWidth":640,"pixelHeight":480,"bitDepth":8,"hasAlpha":true,"dpi":72})");
    Mutator mutator;
    const QString path = QStringLiteral("/a/file");
    for (int i = 0; i < 20'000; ++i) {
        for (QByteArray bytes : {audio, image}) {
            mutator.mutate(bytes);
            (void)audioInfoFromJson(bytes, path);
            (void)imageInfoFromJson(bytes, path);
            const auto bpm = tempoFromJson(bytes);
            QVERIFY(!bpm || (*bpm > 0 && *bpm < 1000));
        }
    }
}

void MutationTest::anyBeginOfAFileIsSurvived()
{
    const QImage picture = turnable(16, 16);
    std::vector<QByteArray> heads{"<?xml version='1.0'?><svg/>",
                                  "%PDF-1.7\n",
                                  "BM",
                                  "ID3\3",
                                  QByteArray("\0\0\0\x18"
                                             "ftypheic",
                                             12),
                                  "8BPS\0\1",
                                  "OggS",
                                  "II*\0CR\2",
                                  QByteArray(200, 'G') + QByteArray(700, 'G')};
    for (const char *format : {"png", "jpg", "bmp", "tiff", "webp"})
        heads.push_back(encoded(picture, format).left(kSniffedBytes));
    Mutator mutator;
    for (int i = 0; i < 20'000; ++i) {
        QByteArray head = heads.at(mutator.number(static_cast<quint32>(heads.size())));
        mutator.mutate(head);
        // On a heap of its own, so that a look beyond its end is seen.
        const std::vector<std::uint8_t> bytes(head.begin(), head.end());
        QVERIFY(sniffedKind(bytes) <= FileKind::OtherMedia);
    }
}

OSTRELLE_TEST(MutationTest)
#include "MutationTest.moc"
