#include "platform/freedesktop/ClipboardTypes.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

namespace ostrelle {

using clipboardTypes::Encoding;

class ClipboardTypesTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void findsFormatsInTheirOrder()
    {
        const QByteArrayList types{"TARGETS",   "text/plain; charset=UTF-8",   "STRING", "image/tiff",
                                   "image/png", "x-special/gnome-copied-files"};
        const QList<ClipboardFormat> all{ClipboardFormat::Files, ClipboardFormat::Png, ClipboardFormat::Tiff,
                                         ClipboardFormat::Text};
        QCOMPARE(clipboardTypes::formatsOf(types), all);
        const auto text = clipboardTypes::candidatesFor(ClipboardFormat::Text, types);
        QCOMPARE(text.count(), 2);
        QCOMPARE(text.first().type, "text/plain; charset=UTF-8");
        QVERIFY(clipboardTypes::formatsOf({"TARGETS", "text/html", "image/x-png"}).isEmpty());
    }

    void decodesText_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Encoding>("encoding");
        QTest::addColumn<QString>("text");
        QTest::newRow("utf-8") << QByteArray("  gr\xc3\xbc\xc3\x9f\n") << Encoding::Utf8 << QStringLiteral("  grüß\n");
        QTest::newRow("invalid") << QByteArray("a\xff"
                                               "b")
                                 << Encoding::Utf8 << QStringLiteral("a\uFFFDb");
        QTest::newRow("mark and NUL") << QByteArray("\xef\xbb\xbfx\0\0", 6) << Encoding::Utf8 << QStringLiteral("x");
        QTest::newRow("utf-16") << QByteArray("\xff\xfe"
                                              "a\0\xe4\0",
                                              6)
                                << Encoding::UnknownText << QStringLiteral("aä");
        QTest::newRow("latin-1 unsaid") << QByteArray("\xe4") << Encoding::UnknownText << QStringLiteral("ä");
        QTest::newRow("latin-1") << QByteArray("\xc3\xa4") << Encoding::Latin1 << QStringLiteral("Ã¤");
    }
    void decodesText()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Encoding, encoding);
        QTEST(clipboardTypes::decodeText(bytes, encoding), "text");
    }

    void keepsOnlyLocalFiles()
    {
        const QByteArray list = "# a comment\r\n"
                                "file:///plain.txt\r\n"
                                "file://localhost/two%20words%0Aand%20a%20line\r\n"
                                "FILE:/short%C3%A9\r\n"
                                "file://elsewhere/remote\r\n"
                                "file:///not%FFutf8\r\n"
                                "file:///nul%00inside\r\n"
                                "file:relative\r\n"
                                "https://example.org/page\r\n"
                                "file:///last";
        const QStringList expected{QStringLiteral("/plain.txt"), QStringLiteral("/two words\nand a line"),
                                   QStringLiteral("/shorté"), QStringLiteral("/last")};
        QCOMPARE(clipboardTypes::decodeFiles(list, Encoding::UriList), expected);
        QCOMPARE(clipboardTypes::decodeFiles("cut\nfile:///a\nfile:///b", Encoding::CopiedFiles),
                 QStringList({QStringLiteral("/a"), QStringLiteral("/b")}));
        QVERIFY(clipboardTypes::decodeFiles("https://example.org/", Encoding::UriList).isEmpty());
    }

    void takesNoTitleForAFile()
    {
        const std::u16string text = u"file:///tmp/two%20words\nfile:///tmp/title\nhttps://example.org/\nA page";
        const QByteArray bytes(reinterpret_cast<const char *>(text.data()), qsizetype(text.size()) * 2);
        QCOMPARE(clipboardTypes::decodeFiles(bytes, Encoding::MozillaUrl),
                 QStringList{QStringLiteral("/tmp/two words")});
    }
};

} // namespace ostrelle

using ostrelle::ClipboardTypesTest;
OSTRELLE_TEST(ClipboardTypesTest)

#include "ClipboardTypesTest.moc"
