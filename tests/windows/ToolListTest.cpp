#include "windows/ToolList.h"
#include "SettingsFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "windows/LiftedRow.h"
#include "windows/ToolRow.h"

#include <QMimeData>
#include <QMouseEvent>

#include <algorithm>
#include <cstdlib>

using namespace ostrelle;

namespace {

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

struct ToolStage : SettingsFixture
{
    ToolStage() { open(SettingsSection::Modules); }

    /// The rows from the top.
    QList<ToolRow *> rows() const
    {
        QList<ToolRow *> rows = window().findChildren<ToolRow *>();
        std::sort(rows.begin(), rows.end(), [](const ToolRow *a, const ToolRow *b) { return a->y() < b->y(); });
        return rows;
    }
    QStringList order() const
    {
        QStringList order;
        for (const KestroModule module : settings.moduleOrder())
            order.append(rawValue(module));
        return order;
    }
    QStringList shown() const
    {
        QStringList order;
        for (const ToolRow *row : rows())
            order.append(rawValue(row->module()));
        return order;
    }
    ToolList &list() const { return *window().findChild<ToolList *>(); }
    /// Of a row, in the list.
    static QPoint middle(int row) { return {100, row * ToolRow::kHeight + ToolRow::kHeight / 2}; }
    static void move(ToolRow &row, const QPoint &position)
    {
        QMouseEvent event(QEvent::MouseMove, position, row.mapToGlobal(position), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&row, &event);
    }
    /// Drags a row so far down, in rows, and lets it go there unless it shall stay in the hand.
    ToolRow &drag(int from, int by)
    {
        ToolRow &row = *rows().at(from);
        const QPoint grip(20, 10);
        QTest::mousePress(&row, Qt::LeftButton, {}, grip);
        const int start = row.y();
        const int steps = std::abs(by) * 4;
        for (int i = 1; i <= steps; ++i) {
            const int there = start + grip.y() + by * ToolRow::kHeight * i / steps;
            move(row, QPoint(grip.x(), there - row.y()));
            clock.advance(std::chrono::milliseconds(20));
        }
        return row;
    }
    void drop(ToolRow &row)
    {
        QTest::mouseRelease(&row, Qt::LeftButton, {}, QPoint(20, 10));
        settle();
    }
};

} // namespace

class ToolListTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void dragsMoveToolsBeforeAndAfterOthers_data();
    void dragsMoveToolsBeforeAndAfterOthers();
    void aDragIsStoredAtEveryPlaceAndEscapeTakesItBack();
    void aRowOnItsWayHomeMayLoseItsList();
    void isPutDownWhenTheWindowIsLeft();
    void pressesWithoutMovementMoveNothing();
    void keysMoveTheRowThatHasTheFocus();
    void switchesHideAndShowTools();
    void followsChangesFromElsewhere();
    void aRowTakenOutOfTheWindowIsADragOfText();
    void doesWhatADragOfAnotherProgramSays_data();
    void doesWhatADragOfAnotherProgramSays();
    void forgetsADragThatLeavesBeforeItHasSpoken();
};

void ToolListTest::dragsMoveToolsBeforeAndAfterOthers_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("by");
    QTest::addColumn<QStringList>("order");
    const auto list = [](const char *names) { return latin(names).split(u' '); };
    QTest::newRow("fourth onto first") << 3 << -3 << list("projects clipboard color assets imageInfo audioInfo");
    QTest::newRow("first onto third") << 0 << 2 << list("color assets clipboard projects imageInfo audioInfo");
    QTest::newRow("beyond the end") << 1 << 5 << list("clipboard assets projects imageInfo audioInfo color");
    QTest::newRow("beyond the top") << 5 << -6 << list("audioInfo clipboard color assets projects imageInfo");
}

void ToolListTest::dragsMoveToolsBeforeAndAfterOthers()
{
    QFETCH(const int, from);
    QFETCH(const int, by);
    ToolStage stage;
    stage.drop(stage.drag(from, by));
    QTEST(stage.order(), "order");
    QTEST(stage.shown(), "order");
}

void ToolListTest::aDragIsStoredAtEveryPlaceAndEscapeTakesItBack()
{
    ToolStage stage;
    const QStringList before = stage.order();
    ToolRow &row = stage.drag(4, -2);
    QCOMPARE(stage.order().indexOf(latin("imageInfo")), 2);
    QVERIFY(stage.window().findChild<LiftedRow *>());
    stage.press(Qt::Key_Escape);
    stage.settle();
    QCOMPARE(stage.order(), before);
    QCOMPARE(stage.shown(), before);
    QVERIFY(!stage.window().findChild<LiftedRow *>());
    stage.drop(row);
    QCOMPARE(stage.order(), before);
    QVERIFY(stage.controllerOfWindow.window());
}

void ToolListTest::aRowOnItsWayHomeMayLoseItsList()
{
    ToolStage stage;
    ToolRow &row = stage.drag(4, -2);
    QTest::mouseRelease(&row, Qt::LeftButton, {}, QPoint(20, 10));
    stage.clock.advance(std::chrono::milliseconds(30));
    QVERIFY(stage.window().findChild<LiftedRow *>());
    QTest::mouseClick(stage.find<QWidget>(latin("General")), Qt::LeftButton);
    stage.settle();
    QVERIFY(!stage.window().findChild<ToolList *>());
    QVERIFY(!stage.window().findChild<LiftedRow *>());
}

void ToolListTest::isPutDownWhenTheWindowIsLeft()
{
    ToolStage stage;
    ToolRow &row = stage.drag(4, -2);
    const QStringList there = stage.order();
    QEvent left(QEvent::WindowDeactivate);
    QApplication::sendEvent(&stage.window(), &left);
    stage.settle();
    QVERIFY(!stage.window().findChild<LiftedRow *>());
    // Nothing follows a pointer any more that is back after a while.
    stage.move(row, QPoint(20, 300));
    QCOMPARE(stage.order(), there);
}

void ToolListTest::pressesWithoutMovementMoveNothing()
{
    ToolStage stage;
    const QStringList before = stage.order();
    ToolRow &row = *stage.rows().at(2);
    QTest::mousePress(&row, Qt::LeftButton, {}, QPoint(20, 10));
    ToolStage::move(row, QPoint(22, 11));
    QVERIFY(!stage.window().findChild<LiftedRow *>());
    stage.drop(row);
    ToolStage::move(row, QPoint(20, 200));
    QCOMPARE(stage.order(), before);
}

void ToolListTest::keysMoveTheRowThatHasTheFocus()
{
    ToolStage stage;
    stage.button(latin("Color")).setFocus();
    stage.press(Qt::Key_Down, Qt::AltModifier);
    stage.press(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(stage.order().indexOf(latin("color")), 3);
    QVERIFY(stage.button(latin("Color")).hasFocus());
    // Tab goes on from where it is now.
    stage.press(Qt::Key_Tab);
    QVERIFY(stage.button(latin("Image Info")).hasFocus());
    stage.button(latin("Clipboard")).setFocus();
    stage.press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(stage.order().first(), latin("clipboard"));
}

void ToolListTest::switchesHideAndShowTools()
{
    ToolStage stage;
    for (const KestroModule module : kAllModules)
        stage.click(title(module));
    QVERIFY(stage.settings.activeModules().isEmpty());
    QCOMPARE(stage.button(latin("Assets")).accessibleDescription(), latin("Hidden from the notch"));
    stage.click(latin("Assets"));
    QCOMPARE(stage.settings.activeModules(), QList<KestroModule>{KestroModule::Assets});
    QCOMPARE(stage.button(latin("Assets")).accessibleDescription(), latin("Shown in the notch"));
}

void ToolListTest::followsChangesFromElsewhere()
{
    ToolStage stage;
    stage.drag(1, 1); // in the hand while the order changes
    stage.settings.setModuleOrder({KestroModule::AudioInfo, KestroModule::Clipboard, KestroModule::AudioInfo});
    stage.settings.setEnabledModules({KestroModule::Clipboard});
    stage.settle();
    QCOMPARE(stage.shown(), stage.order());
    QVERIFY(!stage.window().findChild<LiftedRow *>());
    QVERIFY(stage.button(latin("Clipboard")).isChecked());
    QVERIFY(!stage.button(latin("Audio Info")).isChecked());
    stage.drop(stage.drag(2, -1));
    QCOMPARE(stage.order(), QStringList({latin("audioInfo"), latin("audioInfo"), latin("clipboard")}));
}

void ToolListTest::aRowTakenOutOfTheWindowIsADragOfText()
{
    ToolStage stage;
    FakeDragOut &dragOut = stage.platform.dragOut();
    ToolRow &row = stage.drag(3, -1);
    const QStringList order = stage.order();
    QCOMPARE(order.indexOf(latin("projects")), 2);
    QVERIFY(!dragOut.isRunning());
    ToolStage::move(row, QPoint(-900, 10));
    QVERIFY(dragOut.isRunning());
    QCOMPARE(dragOut.textDrag().text, latin("projects"));
    QCOMPARE(dragOut.textDrag().hotSpot, QPoint(20, 10));
    QCOMPARE(dragOut.textDrag().picture.deviceIndependentSize(), QSizeF(row.size()));
    QVERIFY(!stage.window().findChild<LiftedRow *>(QString(), Qt::FindDirectChildrenOnly)->isVisible());
    // The pointer is the desktop's now; what comes late does nothing.
    ToolStage::move(row, QPoint(20, -100));
    QTest::mouseRelease(&row, Qt::LeftButton, {}, QPoint(20, 10));
    QCOMPARE(stage.order(), order);
    dragOut.end(DragOut::Outcome::Cancelled);
    stage.settle();
    QCOMPARE(stage.order(), order);
    QVERIFY(stage.button(latin("Projects")).isVisible());
    QVERIFY(!stage.window().findChild<LiftedRow *>());
    stage.drop(stage.drag(0, 1));
    QCOMPARE(stage.order().indexOf(latin("clipboard")), 1);
}

void ToolListTest::doesWhatADragOfAnotherProgramSays_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("over");
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<QStringList>("order");
    const auto list = [](const char *names) { return latin(names).split(u' '); };
    const QStringList before = list("clipboard color assets projects imageInfo audioInfo");
    QTest::newRow("before one above it") << latin("projects") << 1 << true
                                         << list("clipboard projects color assets imageInfo audioInfo");
    QTest::newRow("after one below it") << latin("clipboard") << 2 << true
                                        << list("color assets clipboard projects imageInfo audioInfo");
    QTest::newRow("onto its own row") << latin("assets") << 2 << true << before;
    QTest::newRow("other text") << latin("Projects") << 1 << false << before;
    QTest::newRow("nothing") << QString() << 1 << false << before;
}

void ToolListTest::doesWhatADragOfAnotherProgramSays()
{
    QFETCH(const QString, text);
    QFETCH(const int, over);
    QFETCH(const bool, isTaken);
    ToolStage stage;
    const QStringList before = stage.order();
    QMimeData offered;
    offered.setText(latin("not to be asked in this way"));
    QDragEnterEvent enter(ToolStage::middle(over), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &enter);
    QVERIFY(enter.isAccepted());
    QDragMoveEvent early(ToolStage::middle(over), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &early);
    QVERIFY(!early.isAccepted());
    QCOMPARE(stage.order(), before);
    stage.platform.dragText().say(text);
    QTEST(stage.order(), "order");
    QDragMoveEvent late(ToolStage::middle(over), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &late);
    QCOMPARE(late.isAccepted(), isTaken);
    QDropEvent drop(ToolStage::middle(over), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &drop);
    QCOMPARE(drop.isAccepted(), isTaken);
    stage.settle();
    QTEST(stage.shown(), "order");
}

void ToolListTest::forgetsADragThatLeavesBeforeItHasSpoken()
{
    ToolStage stage;
    const QStringList before = stage.order();
    QMimeData offered;
    offered.setData(QStringLiteral("image/png"), "png");
    QDragEnterEvent picture(ToolStage::middle(1), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &picture);
    QVERIFY(!picture.isAccepted() && !stage.platform.dragText().isAsked());
    offered.setText(latin("audioInfo"));
    QDragEnterEvent enter(ToolStage::middle(1), Qt::CopyAction, &offered, Qt::LeftButton, {});
    QApplication::sendEvent(&stage.list(), &enter);
    QVERIFY(stage.platform.dragText().isAsked());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&stage.list(), &leave);
    QVERIFY(!stage.platform.dragText().isAsked());
    stage.platform.dragText().say(latin("audioInfo"));
    QCOMPARE(stage.order(), before);
}

OSTRELLE_TEST(ToolListTest)
#include "ToolListTest.moc"
