#include "clipboard/ClipboardListModel.h"
#include "ClipboardToolFixture.h"
#include "clipboard/ClipboardProxyModel.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

using namespace ostrelle;

class ClipboardListModelTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void staysEqualToTheHistory();
    void followsAnyRunOfChanges_data();
    void followsAnyRunOfChanges();
    void showsOneCleanLineOfAnyText();
    void countsVeryLongTextsAside();
    void tellsAssistiveTechnologyWhatARowShows();
};

namespace {

QStringList titles(const ClipboardListModel &model)
{
    QStringList result;
    for (int i = 0; i < model.rowCount(); ++i)
        result.append(model.index(i).data().toString());
    return result;
}

ClipboardRow rowAt(const ClipboardListModel &model, int index)
{
    return model.index(index).data(ClipboardListModel::kRowRole).value<ClipboardRow>();
}

} // namespace

void ClipboardListModelTest::staysEqualToTheHistory()
{
    ClipboardToolFixture fixture;
    fixture.start({textClip(QStringLiteral("c")), pinnedClip(QStringLiteral("b")), textClip(QStringLiteral("a"))});
    ClipboardListModel model(*fixture.service);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(titles(model), fixture.texts());

    fixture.service->togglePin(fixture.find(QStringLiteral("a")).id);
    QVERIFY(rowAt(model, 2).pinned);
    fixture.service->remove(fixture.find(QStringLiteral("b")).id);
    QCOMPARE(titles(model), QStringList({QStringLiteral("c"), QStringLiteral("a")}));
    fixture.service->undo();
    QCOMPARE(titles(model), fixture.texts());
    QCOMPARE(model.rowCount(), 3);
    QVERIFY(rowAt(model, 1).pinned);
    fixture.service->clearUnpinned();
    QCOMPARE(titles(model), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
    fixture.service->eraseAll(true);
    QCOMPARE(model.rowCount(), 0);
}

void ClipboardListModelTest::followsAnyRunOfChanges_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 4; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void ClipboardListModelTest::followsAnyRunOfChanges()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    ClipboardToolFixture fixture;
    fixture.start({});
    fixture.service->start();
    ClipboardListModel model(*fixture.service);
    ClipboardProxyModel results(model);
    const QAbstractItemModelTester modelTester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester resultsTester(&results, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto anyId = [&] {
        const QList<ClipItem> &items = fixture.service->items();
        return items.isEmpty() ? QUuid() : items.at(random.bounded(int(items.size()))).id;
    };
    const QList<std::function<void()>> changes{
        [&] { fixture.service->togglePin(anyId()); },
        [&] { fixture.service->remove(anyId()); },
        [&] { fixture.service->undo(); },
        [&] { fixture.service->erase(anyId()); },
        [&] { fixture.service->clearUnpinned(); },
        [&] { fixture.settings.setClipboardLimit(random.bounded(1, 8)); },
        [&] { results.setQuery(random.bounded(2) == 0 ? QString() : QString::number(random.bounded(10))); },
    };
    for (int step = 0; step < 150; ++step) {
        // Mostly copies, so that there is something to change; some of them repeats.
        if (random.bounded(2) == 0) {
            fixture.port.copyText(QString::number(random.bounded(14)));
            fixture.clock.advance(std::chrono::seconds(1));
        } else {
            changes.at(random.bounded(int(changes.size())))();
        }
        QCOMPARE(titles(model), fixture.texts());
        for (int i = 0; i < model.rowCount(); ++i)
            QCOMPARE(rowAt(model, i).pinned, fixture.service->items().at(i).pinned);
    }
    results.setQuery({});
    fixture.clock.advance(std::chrono::seconds(1));
    QTRY_COMPARE(results.rowCount(), model.rowCount());
    for (int i = 1; i < results.rowCount(); ++i) {
        const ClipboardRow above = results.row(i - 1);
        const ClipboardRow below = results.row(i);
        QVERIFY(above.pinned == below.pinned ? above.date >= below.date : above.pinned);
    }
}

void ClipboardListModelTest::showsOneCleanLineOfAnyText()
{
    ClipboardToolFixture fixture;
    fixture.start({textClip(QStringLiteral("  one\r\ntwo\tthree\x07 four\u2028five\rsix \n")),
                   textClip(QString(5'000'000, u'x')),
                   textClip(QStringLiteral("x").append(QString(2000, u' ')) + u'y')});
    const ClipboardListModel model(*fixture.service);
    QCOMPARE(rowAt(model, 0).title, QStringLiteral("one two three  four five six"));
    QVERIFY(rowAt(model, 1).title.size() <= 512);
    // Half an emoji at the cut would be shown as a replacement character.
    fixture.service->eraseAll(true);
    ClipboardToolFixture emoji;
    emoji.start({textClip(QStringLiteral("x") + QStringLiteral("\U0001F6F3").repeated(600))});
    const ClipboardListModel emojiModel(*emoji.service);
    QVERIFY(!rowAt(emojiModel, 0).title.back().isHighSurrogate());
}

void ClipboardListModelTest::countsVeryLongTextsAside()
{
    ClipboardToolFixture fixture;
    fixture.start({textClip(QString(100'000, u'x')), textClip(QString(1000, u'x'))});
    ClipboardListModel model(*fixture.service);
    QCOMPARE(rowAt(model, 1).detail, QStringLiteral("1000 characters"));
    QCOMPARE(rowAt(model, 0).detail, QString());
    // A change while it is counted must not lose the answer.
    fixture.service->togglePin(rowAt(model, 0).id);
    QTRY_COMPARE(rowAt(model, 0).detail, QStringLiteral("100000 characters"));
    QVERIFY(rowAt(model, 0).pinned);
}

void ClipboardListModelTest::tellsAssistiveTechnologyWhatARowShows()
{
    ClipboardToolFixture fixture;
    fixture.start({textClip(QStringLiteral("Night ferry"), 305)});
    const ClipboardListModel model(*fixture.service);
    QCOMPARE(model.index(0).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Night ferry, 11 characters, 5 min."));
}

OSTRELLE_TEST(ClipboardListModelTest)
#include "ClipboardListModelTest.moc"
