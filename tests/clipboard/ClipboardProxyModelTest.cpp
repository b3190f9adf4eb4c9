#include "clipboard/ClipboardProxyModel.h"
#include "ClipboardToolFixture.h"
#include "clipboard/ClipboardListModel.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace ostrelle;

class ClipboardProxyModelTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void putsPinnedItemsFirstAndKeepsTheOrderOfEqualDates();
    void findsByTitleOrApplication_data();
    void findsByTitleOrApplication();
    void findsInVeryLongTextsAside();
};

namespace {

QStringList titles(const ClipboardProxyModel &model)
{
    QStringList result;
    for (int i = 0; i < model.rowCount(); ++i)
        result.append(model.row(i).title);
    return result;
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

void ClipboardProxyModelTest::putsPinnedItemsFirstAndKeepsTheOrderOfEqualDates()
{
    ClipboardToolFixture fixture;
    auto twin = textClip(QStringLiteral("twin1"), 20);
    auto otherTwin = textClip(QStringLiteral("twin2"), 20);
    otherTwin.item.date = twin.item.date;
    fixture.start({textClip(QStringLiteral("new"), 1), twin, otherTwin, pinnedClip(QStringLiteral("pin"), 9000),
                   pinnedClip(QStringLiteral("oldPin"), 9999)});
    ClipboardListModel history(*fixture.service);
    ClipboardProxyModel results(history);
    const QAbstractItemModelTester tester(&results, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(titles(results), words("pin oldPin new twin1 twin2"));

    fixture.service->togglePin(fixture.find(QStringLiteral("twin2")).id);
    QCOMPARE(titles(results), words("twin2 pin oldPin new twin1"));
    fixture.service->togglePin(fixture.find(QStringLiteral("twin2")).id);
    QCOMPARE(titles(results), words("pin oldPin new twin1 twin2"));
    fixture.service->remove(fixture.find(QStringLiteral("oldPin")).id);
    fixture.service->undo();
    QCOMPARE(titles(results), words("pin oldPin new twin1 twin2"));
}

void ClipboardProxyModelTest::findsByTitleOrApplication_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("found");
    const QString lines = QStringLiteral("Leaves at dusk");
    const QString accent = QStringLiteral("\u00c9T\u00c9");
    const QString files = QStringLiteral("horn.wav");
    QTest::newRow("blank") << QStringLiteral(" \t ") << QStringList({lines, accent, files});
    QTest::newRow("case and blanks around") << QStringLiteral("  LEAVES\t") << QStringList({lines});
    QTest::newRow("beyond ASCII") << QStringLiteral("\u00e9t\u00e9") << QStringList({accent});
    QTest::newRow("over a line break") << QStringLiteral("leaves at D") << QStringList({lines});
    QTest::newRow("over a line break, other word") << QStringLiteral("leaves on d") << QStringList();
    QTest::newRow("past the end") << QStringLiteral("dusk x") << QStringList();
    QTest::newRow("application only") << QStringLiteral("notes") << QStringList({accent});
    QTest::newRow("name of a file, not its folder") << QStringLiteral("horn") << QStringList({files});
    QTest::newRow("folder of a file") << QStringLiteral("secret") << QStringList();
}

void ClipboardProxyModelTest::findsByTitleOrApplication()
{
    QFETCH(QString, query);
    ClipboardToolFixture fixture;
    auto accent = textClip(QStringLiteral("\u00c9T\u00c9"), 2);
    accent.item.appName = QStringLiteral("Notes");
    auto files = clip(ClipItem::Kind::Files, 3);
    files.item.paths = QStringList({QStringLiteral("/secret/horn.wav")});
    fixture.start({textClip(QStringLiteral("\n Leaves\nat dusk "), 1), accent, files});
    ClipboardListModel history(*fixture.service);
    ClipboardProxyModel results(history);
    results.setQuery(query);
    QTEST(titles(results), "found");
    results.setQuery(QString());
    QCOMPARE(results.rowCount(), 3);
}

void ClipboardProxyModelTest::findsInVeryLongTextsAside()
{
    ClipboardToolFixture fixture;
    const QString body(100'000, u'x');
    fixture.start({textClip(body + QStringLiteral(" needle"), 1), textClip(body, 2)});
    ClipboardListModel history(*fixture.service);
    ClipboardProxyModel results(history);
    const QAbstractItemModelTester tester(&results, QAbstractItemModelTester::FailureReportingMode::QtTest);
    results.setQuery(QStringLiteral("needles"));
    results.setQuery(QStringLiteral("Needle"));
    QTRY_COMPARE(results.rowCount(), 1);
    QCOMPARE(results.idAt(0), fixture.service->items().first().id);
    results.setQuery(QStringLiteral("absent"));
    QCOMPARE(results.rowCount(), 0);
}

OSTRELLE_TEST(ClipboardProxyModelTest)
#include "ClipboardProxyModelTest.moc"
