#include "MediaFixture.h"
#include "SoundTools.h"

#include "media_client/ImageInfo.h"
#include "media_helper/ByteSource.h"
#include "media_helper/ImageCommand.h"
#include "media_helper/ProfileName.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QImage>
#include <QTest>

#include <array>
#include <cstring>
#include <vector>

using namespace ostrelle;

/// Headers written by hand: what is told of files that end early, that few programs write, and of profiles.
class ImageHeadersTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void headersTellWhatTheyCan_data();
    void headersTellWhatTheyCan();
    void profilesAreNamedInEnglish_data();
    void profilesAreNamedInEnglish();
};

namespace {

constexpr std::array kReaders{
    ImageFactsRow{FileKind::Jpeg, readJpegFacts}, ImageFactsRow{FileKind::Png, readPngFacts},
    ImageFactsRow{FileKind::Tiff, readTiffFacts}, ImageFactsRow{FileKind::Bmp, readBmpFacts},
    ImageFactsRow{FileKind::Ico, readIcoFacts},   ImageFactsRow{FileKind::Psd, readPsdFacts},
    ImageFactsRow{FileKind::Gif, readGifFacts},   ImageFactsRow{FileKind::Jpeg2000, readJpeg2000Facts},
};

std::span<const std::uint8_t> spanOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())};
}

QString summaryOf(const QByteArray &bytes)
{
    MemorySource source(spanOf(bytes));
    const CommandAnswer answer = answerImageInfo(source, {}, {kReaders, UnknownKinds::Refuse, 4U << 20U});
    const QByteArray json(reinterpret_cast<const char *>(answer.payload.data()), qsizetype(answer.payload.size()));
    const auto info = imageInfoFromJson(json, QStringLiteral("/picture"));
    if (!info)
        return QStringLiteral("nothing");
    return QStringLiteral("%1x%2 %3 %4 %5%6 %7")
        .arg(info->pixelWidth)
        .arg(info->pixelHeight)
        .arg(info->format, info->colorSpace.value_or(QStringLiteral("-")))
        .arg(info->bitDepth.value_or(0))
        .arg(info->hasAlpha ? QStringLiteral("a") : QString())
        .arg(info->dpi.value_or(0));
}

QByteArray replaced(QByteArray bytes, qsizetype at, const QByteArray &by)
{
    return bytes.replace(at, by.size(), by);
}

/// One field of a TIFF directory, least significant byte first, its value in it.
QByteArray tiffField(int tag, int type, quint64 count, quint64 value)
{
    return littleEndian(quint64(tag), 2) + littleEndian(quint64(type), 2) + littleEndian(count, 4) +
           littleEndian(value, 4);
}

QByteArray tiffOf(const QList<QByteArray> &fields)
{
    QByteArray file = QByteArray("II*\0\x08\0\0\0", 8) + littleEndian(quint64(fields.size()), 2);
    for (const QByteArray &field : fields)
        file += field;
    return file + QByteArray(4, '\0');
}

/// A document of 60 by 40, three channels of eight bits, with one resource.
QByteArray psdOf(const QByteArray &mark, const QByteArray &layers)
{
    // 300 pixels per inch.
    const QByteArray resource = mark + bigEndian(1005, 2) + bigEndian(0, 2) + bigEndian(16, 4) +
                                bigEndian(300U << 16U, 4) + QByteArray(12, '\0');
    return "8BPS" + bigEndian(1, 2) + QByteArray(6, '\0') + bigEndian(4, 2) + bigEndian(40, 4) + bigEndian(60, 4) +
           bigEndian(8, 2) + bigEndian(3, 2) + bigEndian(0, 4) + bigEndian(quint64(resource.size()), 4) + resource +
           bigEndian(quint64(layers.size()), 4) + layers;
}

/// A picture of 60 by 40 with these boxes in its header, and no pixels.
QByteArray jp2Of(const QByteArray &boxes, int components)
{
    const QByteArray size =
        bigEndian(40, 4) + bigEndian(60, 4) + bigEndian(quint64(components), 2) + "\x0f\7" + QByteArray(2, '\0');
    return mp4Box("jP  ", "\r\n\x87\n") + mp4Box("ftyp", "jp2 " + QByteArray(4, '\0') + "jp2 ") +
           mp4Box("jp2h", mp4Box("ihdr", size) + boxes);
}

QByteArray namesOf(const QList<std::pair<QByteArray, QString>> &names)
{
    QByteArray records = bigEndian(quint64(names.size()), 4) + bigEndian(12, 4);
    QByteArray texts;
    for (const auto &[language, text] : names) {
        QByteArray letters;
        for (const QChar letter : text)
            letters += bigEndian(letter.unicode(), 2);
        records += language + bigEndian(quint64(letters.size()), 4) +
                   bigEndian(quint64(8 + 8 + 12 * names.size() + texts.size()), 4);
        texts += letters;
    }
    return "mluc" + QByteArray(4, '\0') + records + texts;
}

/// A profile of a display with nothing in it but its description.
QByteArray profileOf(int version, const QByteArray &description)
{
    QByteArray header = bigEndian(128 + 4 + 12 + quint64(description.size()), 4) + QByteArray(4, '\0') +
                        bigEndian(quint64(version), 1) + QByteArray(3, '\0') + "mntrRGB XYZ ";
    header = header.leftJustified(36, '\0') + "acsp";
    return header.leftJustified(128, '\0') + bigEndian(1, 4) + "desc" + bigEndian(128 + 4 + 12, 4) +
           bigEndian(quint64(description.size()), 4) + description;
}

} // namespace

void ImageHeadersTest::headersTellWhatTheyCan_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("summary");
    const auto row = [](const char *name, const QByteArray &bytes, const char *summary) {
        QTest::newRow(name) << bytes << QString::fromLatin1(summary);
    };
    const QImage picture = turnable(60, 40);
    const QByteArray png = encoded(picture, "png");
    row("png cut behind its size", png.left(36), "60x40 PNG RGB 8 0");
    row("png with a damaged chunk", replaced(png, 33, "\x7f\xff\xff\xff"), "60x40 PNG RGB 8 0");
    const QByteArray jpeg = encoded(picture, "jpg");
    const qsizetype frame = jpeg.indexOf("\xff\xc0");
    row("jpeg cut in its tables", jpeg.left(frame + 30), "60x40 JPEG RGB 8 96");
    row("jpeg of twelve bits", replaced(jpeg, frame + 4, "\x0c"), "60x40 JPEG RGB 12 96");
    row("jpeg cut before its size", jpeg.left(frame), "nothing");

    row("bitmap with a short header",
        "BM" + QByteArray(8, '\0') + littleEndian(30, 4) + littleEndian(16, 4) + littleEndian(60, 4) +
            littleEndian(40, 4) + littleEndian(1, 2) + littleEndian(24, 2) + QByteArray(80, '\x55'),
        "60x40 BMP RGB 8 0");
    row("bitmap of ten bits a channel",
        "BM" + QByteArray(12, '\0') + littleEndian(108, 4) + littleEndian(60, 4) + littleEndian(40, 4) +
            littleEndian(1, 2) + littleEndian(32, 2) + littleEndian(3, 4) + QByteArray(20, '\0') +
            littleEndian(0x3ff00000, 4) + littleEndian(0xffc00, 4) + littleEndian(0x3ff, 4) + QByteArray(60, '\0'),
        "60x40 BMP RGB 10 0");

    const auto icon = [](int kind, int side, const QByteArray &content) {
        return QByteArray(2, '\0') + littleEndian(quint64(kind), 2) + littleEndian(1, 2) + char(side) + char(side) +
               QByteArray(6, '\0') + littleEndian(quint64(content.size()), 4) + littleEndian(22, 4) + content;
    };
    const QByteArray bitmap = littleEndian(40, 4) + littleEndian(16, 4) + littleEndian(32, 4) + QByteArray(80, '\0');
    row("icon with a wrong directory", icon(1, 48, bitmap), "16x16 ICO RGB 8a 0");
    row("icon of more than a byte", icon(1, 0, encoded(turnable(300, 280), "png")), "300x280 ICO RGB 8a 0");
    row("cursor", icon(2, 32, QByteArray(100, 'x')), "32x32 CUR RGB 8a 0");
    row("targa is no cursor", QByteArray("\0\0\2\0\0\0\0\0\0\0\0\0\x3c\0\x28\0\x18\0", 18) + QByteArray(100, '\0'),
        "nothing");

    // Which marks its resources have, and what a number of layers below zero means.
    row("psd", psdOf("8BIM", {}), "60x40 PSD RGB 8 300");
    row("psd of another program", psdOf("MeSa", {}), "60x40 PSD RGB 8 300");
    row("psd with a hole", psdOf("8BIM", bigEndian(2, 4) + bigEndian(0xffff, 2)), "60x40 PSD RGB 8a 300");
    row("psd cut in its resources", psdOf("8BIM", {}).left(40), "60x40 PSD RGB 8 0");

    const QByteArray inks = mp4Box("colr", QByteArray("\1\0\0", 3) + bigEndian(12, 4));
    row("jpeg 2000 in inks", jp2Of(inks, 4), "60x40 JP2 CMYK 16 0");
    const QByteArray gray = mp4Box("colr", QByteArray("\1\0\0", 3) + bigEndian(17, 4));
    row("jpeg 2000 in gray with alpha", jp2Of(gray, 2), "60x40 JP2 Gray 16a 0");
    const QByteArray channels =
        bigEndian(2, 2) + bigEndian(0, 6) + bigEndian(1, 2) + bigEndian(0xffff, 2) + bigEndian(0xffff, 2);
    row("jpeg 2000 with another channel", jp2Of(gray + mp4Box("cdef", channels), 2), "60x40 JP2 Gray 16 0");
    const QByteArray dots = bigEndian(1, 4) + bigEndian(11811, 2) + bigEndian(100, 2) + QByteArray("\0\2", 2);
    row("jpeg 2000 with a resolution", jp2Of(mp4Box("res ", mp4Box("resc", dots)), 3), "60x40 JP2 RGB 16 300");
    const QByteArray palette = bigEndian(2, 2) + QByteArray("\3\7\7\7", 4) + QByteArray(6, '\x55');
    row("jpeg 2000 with a palette", jp2Of(mp4Box("pclr", palette), 1), "60x40 JP2 RGB 8 0");

    const QList<QByteArray> fields{tiffField(256, 3, 1, 60), tiffField(257, 4, 1, 40)};
    row("tiff of one bit", tiffOf(fields), "60x40 TIFF Gray 1 0");
    row("tiff of pixels in the millions", tiffOf({tiffField(256, 4, 1, 5'000'000), fields[1]}),
        "5000000x40 TIFF Gray 1 0");
    row("tiff whose directory is cut", tiffOf({fields[0], fields[1], tiffField(258, 3, 1, 16)}).left(40),
        "60x40 TIFF Gray 1 0");
    row("tiff without a height", tiffOf({fields[0]}), "nothing");
    row("tiff whose values lie behind its end",
        tiffOf({fields[0], fields[1], tiffField(258, 3, 3, 9'999'999), tiffField(282, 5, 1, 9'999'999)}),
        "60x40 TIFF Gray 1 0");
}

void ImageHeadersTest::headersTellWhatTheyCan()
{
    QFETCH(QByteArray, bytes);
    QTEST(summaryOf(bytes), "summary");
}

void ImageHeadersTest::profilesAreNamedInEnglish_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *name, int version, const QByteArray &description, const QString &expected) {
        QTest::newRow(name) << profileOf(version, description) << expected;
    };
    const QString german = QStringLiteral("Weites Gamut \u00fcber alles");
    const QString english = QStringLiteral("Wide gamut");
    const QString japanese = QStringLiteral("\u5e83\u8272\u57df");
    constexpr int kOld = 2;
    constexpr int kNew = 4;
    const QByteArray plain =
        "desc" + QByteArray(4, '\0') + bigEndian(11, 4) + QByteArray("Wide gamut\0", 11) + QByteArray(78, '\0');
    row("plain", kOld, plain, english);
    const QByteArray wide = "desc" + QByteArray(4, '\0') + bigEndian(1, 4) + '\0' + QByteArray("deDE") +
                            bigEndian(3, 4) + QByteArray("\0a\0b\0c", 6);
    row("no letters but wide ones", kOld, wide, QStringLiteral("abc"));
    row("one language", kNew, namesOf({{"deDE", german}}), german);
    row("english of another country behind others", kNew,
        namesOf({{"jaJP", japanese}, {"deDE", german}, {"enGB", english}}), english);
    row("several in an old profile", kOld, namesOf({{"deDE", german}, {"enUS", english}}), english);
    row("no english", kNew, namesOf({{"jaJP", japanese}, {"deDE", german}}), japanese);
    row("letters of two halves", kNew, namesOf({{"enUS", QStringLiteral("\U0001f3a8 paint")}}),
        QStringLiteral("\U0001f3a8 paint"));
    row("text beyond the end", kNew, namesOf({{"enUS", english}}).left(30), {});
}

void ImageHeadersTest::profilesAreNamedInEnglish()
{
    QFETCH(QByteArray, profile);
    const std::vector<std::uint8_t> icc(profile.begin(), profile.end());
    QTEST(QString::fromStdString(profileName(icc)), "name");
}

OSTRELLE_TEST(ImageHeadersTest)
#include "ImageHeadersTest.moc"
