#include "files/PathToolTip.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QStringList>
#include <QTest>
#include <QTextDocument>

using namespace ostrelle;

class PathToolTipTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void showsTheWholePathInLinesOfSomeLength_data();
    void showsTheWholePathInLinesOfSomeLength();
    void takesNoNameForMarkup();
};

void PathToolTipTest::showsTheWholePathInLinesOfSomeLength_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("lineCount");
    QTest::newRow("root") << QStringLiteral("/") << 1;
    QTest::newRow("short") << QStringLiteral("/home/somebody/Films/Night ferry.jpg") << 1;
    QTest::newRow("many folders") << QString(QStringLiteral("/a folder of ten")).repeated(10) << 3;
    QTest::newRow("a name without an end") << u'/' + QString(200, u'x') << 3;
    QTest::newRow("pairs of units") << QStringLiteral("/") + QStringLiteral("🎬").repeated(100) << 3;
}

void PathToolTipTest::showsTheWholePathInLinesOfSomeLength()
{
    QFETCH(const QString, path);
    const QString text = pathToolTip(path);
    QCOMPARE(QString(text).remove(u'\n'), path);
    const QStringList lines = text.split(u'\n');
    QTEST(int(lines.size()), "lineCount");
    for (const QString &line : lines) {
        QVERIFY(!line.isEmpty() && line.size() <= 72);
        QVERIFY(line.isValidUtf16());
    }
}

void PathToolTipTest::takesNoNameForMarkup()
{
    const auto path = QStringLiteral("/films/<b>night</b> & day");
    QTextDocument shown;
    shown.setHtml(pathToolTip(path));
    QCOMPARE(shown.toPlainText(), path);
}

OSTRELLE_TEST(PathToolTipTest)

#include "PathToolTipTest.moc"
