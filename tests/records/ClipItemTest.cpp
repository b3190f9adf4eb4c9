#include "records/ClipItem.h"
#include "records/ClipText.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>
#include <QTextBoundaryFinder>

using namespace ostrelle;

/// The labels of a record, and what counts as equal text.
class ClipItemTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void labelsSayWhatWasCopied_data();
    void labelsSayWhatWasCopied();
    void tellsLinksFromText_data();
    void tellsLinksFromText();
    void countsPerceivedCharacters_data();
    void countsPerceivedCharacters();
    void comparesByCanonicalEquivalence_data();
    void comparesByCanonicalEquivalence();
    void aLongTextIsCutForDisplayOnly();
};

void ClipItemTest::labelsSayWhatWasCopied_data()
{
    using Kind = ClipItem::Kind;
    QTest::addColumn<ClipItem>("item");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");
    const auto written = [](Kind kind, const QString &text) {
        ClipItem item;
        item.kind = kind;
        item.text = text;
        return item;
    };
    const auto files = [](const QStringList &paths) {
        ClipItem item;
        item.kind = Kind::Files;
        item.paths = paths;
        return item;
    };
    ClipItem image;
    image.kind = Kind::Image;
    QTest::newRow("text") << written(Kind::Text, QStringLiteral(" \n a\nb\t")) << QStringLiteral("a b")
                          << QStringLiteral("7 characters");
    QTest::newRow("one character") << written(Kind::Text, QStringLiteral("e\u0301")) << QStringLiteral("e\u0301")
                                   << QStringLiteral("1 character");
    QTest::newRow("no text") << ClipItem() << QString() << QStringLiteral("0 characters");
    QTest::newRow("link") << written(Kind::Link, QStringLiteral("https://example.org:80/a?b"))
                          << QStringLiteral("https://example.org:80/a?b") << QStringLiteral("example.org");
    QTest::newRow("link without host") << written(Kind::Link, QStringLiteral("http:///x"))
                                       << QStringLiteral("http:///x") << QStringLiteral("Link");
    QTest::newRow("image") << image << QStringLiteral("Image") << QStringLiteral("Image");
    image.image = ClipImage{QStringLiteral("public.png"), 9, QSize(640, 480)};
    QTest::newRow("decoded image") << image << QStringLiteral("Image") << QStringLiteral("640 \u00d7 480");
    QTest::newRow("file") << files({QStringLiteral("/a.b/Song.final.wav")}) << QStringLiteral("Song.final.wav")
                          << QStringLiteral("WAV");
    QTest::newRow("hidden file") << files({QStringLiteral("/x/.profile")}) << QStringLiteral(".profile") << QString();
    QTest::newRow("folder") << files({QStringLiteral("/x/kit.d/")}) << QStringLiteral("kit.d") << QStringLiteral("D");
    QTest::newRow("files") << files({QStringLiteral("/a.png"), QStringLiteral("/b")}) << QStringLiteral("2 items")
                           << QStringLiteral("PNG");
    QTest::newRow("no files") << files({}) << QStringLiteral("0 items") << QStringLiteral("Files");
}

void ClipItemTest::labelsSayWhatWasCopied()
{
    QFETCH(ClipItem, item);
    QTEST(title(item), "title");
    QTEST(displayTitle(item), "title");
    QTEST(detail(item), "detail");
}

void ClipItemTest::tellsLinksFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kind");
    QTest::newRow("address") << QStringLiteral("https://a.b/c#d") << QStringLiteral("link");
    QTest::newRow("blanks around") << QStringLiteral(" \n http://a \t") << QStringLiteral("link");
    QTest::newRow("blank inside") << QStringLiteral("http://a b") << QStringLiteral("text");
    QTest::newRow("two lines") << QStringLiteral("http://a\nhttp://b") << QStringLiteral("text");
    QTest::newRow("capitals") << QStringLiteral("HTTPS://a") << QStringLiteral("text");
    QTest::newRow("scheme only") << QStringLiteral("https://") << QStringLiteral("text");
    QTest::newRow("in a sentence") << QStringLiteral("see https://a") << QStringLiteral("text");
    QTest::newRow("blank") << QStringLiteral(" \n\t\u00a0\u2003") << QString();
}

void ClipItemTest::tellsLinksFromText()
{
    QFETCH(QString, text);
    const std::optional<ClipItem::Kind> kind = kindOfText(text);
    QTEST(kind ? rawValue(*kind) : QString(), "kind");
}

void ClipItemTest::countsPerceivedCharacters_data()
{
    QTest::addColumn<QString>("text");
    const QStringList pieces = {QStringLiteral("plain"),
                                QStringLiteral("\r\n"),
                                QStringLiteral("e\u0301"),
                                QStringLiteral("\r"),
                                QStringLiteral("\u0600"),
                                QStringLiteral("\u65e5\u672c"),
                                QStringLiteral("\U0001F469\u200D\U0001F680"),
                                QStringLiteral("\n\u0301"),
                                QStringLiteral("\U0001F1E9\U0001F1EA\U0001F1EB")};
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        for (qsizetype j = 0; j < pieces.size(); ++j)
            QTest::addRow("%d %d", static_cast<int>(i), static_cast<int>(j)) << pieces[i] + pieces[j] + pieces[i];
    }
}

void ClipItemTest::countsPerceivedCharacters()
{
    QFETCH(QString, text);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype expected = 0;
    while (finder.toNextBoundary() > 0)
        ++expected;
    QCOMPARE(characterCount(text), expected);
}

void ClipItemTest::comparesByCanonicalEquivalence_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<bool>("isEqual");
    const QString filler = QStringLiteral("long text ").repeated(100);
    QTest::newRow("same") << filler << filler << true;
    QTest::newRow("composed") << filler + QStringLiteral("\u00e9") + filler
                              << filler + QStringLiteral("e\u0301") + filler << true;
    QTest::newRow("order of marks") << QStringLiteral("a\u0323\u0307x") << QStringLiteral("a\u0307\u0323x") << true;
    QTest::newRow("kelvin") << QStringLiteral("3\u212A") << QStringLiteral("3K") << true;
    QTest::newRow("hangul") << QStringLiteral("\uAC01") << QStringLiteral("\u1100\u1161\u11A8") << true;
    QTest::newRow("many marks") << QStringLiteral("e\u0301").repeated(400) << QStringLiteral("\u00e9").repeated(400)
                                << true;
    QTest::newRow("mark at the end") << QStringLiteral("e") << QStringLiteral("e\u0301") << false;
    QTest::newRow("compatibility only") << QStringLiteral("\uFB01") << QStringLiteral("fi") << false;
    QTest::newRow("case") << filler + u'a' << filler + u'A' << false;
    QTest::newRow("prefix") << filler << filler + u'x' << false;
    QTest::newRow("late difference") << QStringLiteral("\u00e9") + filler + u'1'
                                     << QStringLiteral("e\u0301") + filler + u'2' << false;
}

void ClipItemTest::comparesByCanonicalEquivalence()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QTEST(canonicallyEqual(left, right), "isEqual");
    QTEST(canonicallyEqual(right, left), "isEqual");
    QCOMPARE(left.normalized(QString::NormalizationForm_C) == right.normalized(QString::NormalizationForm_C),
             canonicallyEqual(left, right));
}

void ClipItemTest::aLongTextIsCutForDisplayOnly()
{
    ClipItem item;
    item.text = QStringLiteral("\U0001F600").repeated(5000) + QStringLiteral("\nend");
    QVERIFY(title(item).endsWith(QStringLiteral(" end")));
    QVERIFY(displayTitle(item).size() < 5000);
    QVERIFY(title(item).startsWith(displayTitle(item)));
}

OSTRELLE_TEST(ClipItemTest)
#include "ClipItemTest.moc"
