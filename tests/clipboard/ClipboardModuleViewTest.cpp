#include "clipboard/ClipboardModuleView.h"
#include "ClipboardToolFixture.h"
#include "notch/controls/EmptyStateView.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/InlineSearchField.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

class ClipboardModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void movesTheSelectionByKeysWithoutWrapping();
    void startsFromTheFirstResultWhenTheSelectedOneIsFilteredOut();
    void usesTheSelectedItemOnceAndDismisses();
    void deletesWithTheKeyEvenWhileSearching();
    void undoesTypingBeforeDeletions();
    void selectsUnderAMovingPointerOnly();
    void keepsTheButtonsOnTheSelectedRow();
    void offersTheRowsActionsInItsMenu();
    void wantsTheHeightOfItsResults();
    void showsHeaderActionsOnlyWithHistory();
    void agesOnlyWhileShown();
    void showsPicturesAndTellsTheirSize();
    void asksOnceForPicturesAndOnlyInSight();
};

namespace {

struct OpenTool : ClipboardToolFixture
{
    explicit OpenTool(const QList<Seed> &seeds)
    {
        start(seeds);
        view.emplace(*service, images, haptics, icons, port, popups, clock, context, nullptr);
        view->resize(588, static_cast<int>(*view->wantedBodyHeight()) - 106);
        view->show();
        view->activateWindow();
        view->appeared();
        settle();
    }

    void settle() { clock.advance(std::chrono::seconds(2)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&field(), key, modifiers);
        settle();
    }
    void type(const QString &text)
    {
        QTest::keyClicks(&field(), text);
        settle();
    }
    QLineEdit &field() { return view->searchField().field(); }
    QString selected()
    {
        const int row = view->list().selectedRow();
        return row < 0 ? QString() : view->results().row(row).title;
    }
    QPoint centreOf(int row) { return view->list().plateOf(row).center().toPoint(); }
    void moveTo(const QPoint &position)
    {
        QTest::mouseMove(view->list().viewport(), position);
        settle();
    }

    std::optional<ClipboardModuleView> view;
};

QList<ClipboardToolFixture::Seed> numbered(int count)
{
    QList<ClipboardToolFixture::Seed> seeds;
    for (int i = 0; i < count; ++i)
        seeds.append(textClip(QString::number(i), i));
    return seeds;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

} // namespace

void ClipboardModuleViewTest::movesTheSelectionByKeysWithoutWrapping()
{
    OpenTool tool(numbered(20));
    QCOMPARE(tool.selected(), QStringLiteral("0"));
    tool.press(Qt::Key_Up);
    QCOMPARE(tool.selected(), QStringLiteral("0"));
    tool.press(Qt::Key_Down);
    QCOMPARE(tool.selected(), QStringLiteral("1"));
    tool.press(Qt::Key_PageDown);
    QCOMPARE(tool.selected(), QStringLiteral("6"));
    // Brought to the middle.
    QVERIFY(std::abs(tool.centreOf(6).y() - tool.view->list().viewport()->height() / 2) <= 1);
    tool.press(Qt::Key_End, Qt::ControlModifier);
    tool.press(Qt::Key_Down);
    QCOMPARE(tool.selected(), QStringLiteral("19"));
    tool.press(Qt::Key_PageUp);
    QCOMPARE(tool.selected(), QStringLiteral("14"));
    tool.press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(tool.selected(), QStringLiteral("0"));
    QCOMPARE(tool.view->list().plateOf(0).y(), 0.0);
}

void ClipboardModuleViewTest::startsFromTheFirstResultWhenTheSelectedOneIsFilteredOut()
{
    OpenTool tool({textClip(QStringLiteral("gone"), 1), textClip(QStringLiteral("here 1"), 2),
                   textClip(QStringLiteral("here 2"), 3)});
    tool.type(QStringLiteral("here"));
    QCOMPARE(tool.selected(), QString());
    tool.press(Qt::Key_Return);
    QCOMPARE(tool.useCount(), 0);
    tool.press(Qt::Key_Down);
    QCOMPARE(tool.selected(), QStringLiteral("here 2"));
    // The selected item is kept by what it is, not by its place.
    tool.field().clear();
    QCOMPARE(tool.selected(), QStringLiteral("here 2"));
    QCOMPARE(tool.view->list().selectedRow(), 2);
}

void ClipboardModuleViewTest::usesTheSelectedItemOnceAndDismisses()
{
    OpenTool tool(numbered(3));
    QSignalSpy dismissals(&*tool.view, &ToolView::dismissRequested);
    tool.press(Qt::Key_Return);
    QCOMPARE(tool.useCount(), 1);
    QCOMPARE(dismissals.size(), 1);
    QCOMPARE(tool.haptics.tickCount(), 1);
    QTest::mouseClick(tool.view->list().viewport(), Qt::LeftButton, {}, tool.centreOf(1));
    QCOMPARE(tool.useCount(), 2);
    QCOMPARE(dismissals.size(), 2);
    QCOMPARE(tool.haptics.tickCount(), 2);
}

void ClipboardModuleViewTest::deletesWithTheKeyEvenWhileSearching()
{
    OpenTool tool(
        {textClip(QStringLiteral("a1"), 1), textClip(QStringLiteral("a2"), 2), textClip(QStringLiteral("b"), 3)});
    tool.type(QStringLiteral("a"));
    tool.press(Qt::Key_Left);
    tool.press(Qt::Key_Down);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.field().text(), QStringLiteral("a"));
    QCOMPARE(tool.texts(), QStringList({QStringLiteral("a1"), QStringLiteral("b")}));
    QCOMPARE(tool.selected(), QStringLiteral("a1"));
    tool.press(Qt::Key_Delete);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.texts(), QStringList({QStringLiteral("b")}));
    QCOMPARE(tool.selected(), QString());
}

void ClipboardModuleViewTest::undoesTypingBeforeDeletions()
{
    OpenTool tool(numbered(3));
    tool.press(Qt::Key_Delete);
    tool.type(QStringLiteral("1"));
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.field().text(), QString());
    QCOMPARE(tool.texts().size(), 2);
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.texts().size(), 3);
    QCOMPARE(tool.view->results().rowCount(), 3);
}

void ClipboardModuleViewTest::selectsUnderAMovingPointerOnly()
{
    OpenTool tool(numbered(20));
    tool.moveTo(tool.centreOf(2));
    QCOMPARE(tool.selected(), QStringLiteral("2"));
    // The list scrolls under the resting pointer.
    tool.press(Qt::Key_PageDown);
    tool.moveTo(tool.view->list().viewport()->mapFromGlobal(QCursor::pos()));
    QCOMPARE(tool.selected(), QStringLiteral("7"));
    // The row between press and release may move away: what was pressed is used.
    QWidget *viewport = tool.view->list().viewport();
    const QPoint place = tool.centreOf(8);
    QTest::mousePress(viewport, Qt::LeftButton, {}, place);
    tool.view->list().select(tool.view->results().idAt(15));
    tool.settle();
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
    QCOMPARE(tool.useCount(), 1);
}

void ClipboardModuleViewTest::keepsTheButtonsOnTheSelectedRow()
{
    OpenTool tool(numbered(20));
    ClipboardListView &list = tool.view->list();
    const auto isOnSelectedRow = [&list](const QWidget &button) {
        return button.isVisible() && list.plateOf(list.selectedRow()).contains(QRectF(button.geometry()));
    };
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageUp}) {
        tool.press(key);
        QVERIFY(isOnSelectedRow(list.pinButton()));
        QVERIFY(isOnSelectedRow(list.deleteButton()));
    }
    QWheelEvent wheel({20, 20}, list.viewport()->mapToGlobal(QPointF(20, 20)), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list.viewport(), &wheel);
    tool.settle();
    QVERIFY(isOnSelectedRow(list.pinButton()));

    QCOMPARE(list.pinButton().toolTip(), QStringLiteral("Pin"));
    const QString pinned = tool.selected();
    list.pinButton().click();
    QVERIFY(tool.find(pinned).pinned);
    QCOMPARE(tool.selected(), pinned);
    QCOMPARE(list.pinButton().accessibleName(), QStringLiteral("Unpin"));
    QVERIFY(isOnSelectedRow(list.pinButton()));
    list.deleteButton().click();
    QVERIFY(!tool.texts().contains(pinned));
    QCOMPARE(list.selectedRow(), 0);
    tool.type(QStringLiteral("nothing"));
    QVERIFY(!list.pinButton().isVisible());
}

void ClipboardModuleViewTest::offersTheRowsActionsInItsMenu()
{
    OpenTool tool({pinnedClip(QStringLiteral("pinned"), 1), textClip(QStringLiteral("plain"), 2)});
    const auto openMenuOn = [&tool](int row) {
        const QPoint place = tool.centreOf(row);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, tool.view->list().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(tool.view->list().viewport(), &event);
        QStringList texts;
        for (const QAction *action : tool.popups.menu()->actions())
            texts.append(action->text());
        return texts;
    };
    const auto trigger = [&tool](int action) {
        tool.popups.menu()->actions().at(action)->trigger();
        QCoreApplication::processEvents();
    };
    QCOMPARE(openMenuOn(0),
             QStringList({QStringLiteral("Copy Again"), QStringLiteral("Unpin"), QString(), QStringLiteral("Delete")}));
    trigger(1);
    QVERIFY(!tool.find(QStringLiteral("pinned")).pinned);
    QCOMPARE(openMenuOn(1).at(1), QStringLiteral("Pin"));
    trigger(3);
    QCOMPARE(tool.texts(), QStringList({QStringLiteral("pinned")}));
    // Deleting another row keeps the selection.
    QCOMPARE(tool.selected(), QStringLiteral("pinned"));
    openMenuOn(0);
    trigger(0);
    QCOMPARE(tool.useCount(), 1);
}

void ClipboardModuleViewTest::wantsTheHeightOfItsResults()
{
    OpenTool tool(numbered(12));
    QSignalSpy changes(&*tool.view, &ToolView::wantedBodyHeightChanged);
    QCOMPARE(tool.view->wantedBodyHeight(), 256.0 + 146);
    tool.type(QStringLiteral("1"));
    QCOMPARE(tool.view->wantedBodyHeight(), 3 * 44.0 + 8 + 146);
    tool.type(QStringLiteral("x"));
    QCOMPARE(tool.view->wantedBodyHeight(), 246.0);
    QCOMPARE(changes.size(), 2);
    const auto *empty = tool.view->findChild<EmptyStateView *>();
    QCOMPARE(empty->content().message, QStringLiteral("Nothing matches"));
    tool.service->eraseAll(true);
    QCOMPARE(empty->content().message, QStringLiteral("No copied items yet"));
    QVERIFY(empty->isVisible());
    QVERIFY(!tool.view->list().isVisible());
}

void ClipboardModuleViewTest::showsHeaderActionsOnlyWithHistory()
{
    OpenTool tool({pinnedClip(QStringLiteral("pinned"), 1), textClip(QStringLiteral("plain"), 2)});
    QSignalSpy changes(&*tool.view, &ToolView::headerActionsChanged);
    const QList<QWidget *> actions = tool.view->headerActions();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions.first()->accessibleName(), QStringLiteral("2 items"));
    static_cast<GlyphButton *>(actions.last())->click();
    QCOMPARE(tool.texts(), QStringList({QStringLiteral("pinned")}));
    QCOMPARE(actions.first()->accessibleName(), QStringLiteral("1 item"));
    tool.service->eraseAll(true);
    QVERIFY(tool.view->headerActions().isEmpty());
    QVERIFY(!actions.last()->isVisible());
    QCOMPARE(changes.size(), 2);
}

void ClipboardModuleViewTest::agesOnlyWhileShown()
{
    OpenTool tool(numbered(3));
    const int before = tool.clock.firedCount();
    tool.clock.advance(std::chrono::minutes(10));
    QCOMPARE(tool.clock.firedCount() - before, 10);
    tool.view->hide();
    tool.settle();
    const int hidden = tool.clock.firedCount();
    tool.clock.advance(std::chrono::hours(1));
    QCOMPARE(tool.clock.firedCount(), hidden);
}

void ClipboardModuleViewTest::showsPicturesAndTellsTheirSize()
{
    QImage image(300, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(100, 0, 100, 100, Qt::green);
    OpenTool tool({imageClip(encoded(image, "png"), 1), imageClip(encoded(image, "bmp"), 2)});
    tool.view->grab();
    QTRY_COMPARE((tool.settle(), tool.view->results().row(1).detail), QStringLiteral("300 \u00d7 100"));
    QCOMPARE(tool.view->results().row(0).detail, QStringLiteral("300 \u00d7 100"));
    // The middle of the picture fills the tile.
    const QImage shown = tool.view->list().viewport()->grab().toImage();
    for (const int x : {20, 31, 42})
        QCOMPARE(shown.pixelColor(x, 21), QColor(Qt::green));
}

void ClipboardModuleViewTest::asksOnceForPicturesAndOnlyInSight()
{
    QList<ClipboardToolFixture::Seed> seeds;
    for (int i = 0; i < 30; ++i)
        seeds.append(imageClip("broken " + QByteArray::number(i), i));
    OpenTool tool(seeds);
    const auto asks = [&tool](const QByteArray &image) {
        return QTest::qWaitFor([&] {
            tool.view->grab();
            tool.settle();
            return tool.images.lastImage() == image;
        });
    };
    QVERIFY(asks("broken 5"));
    const int first = tool.images.tileCount();
    tool.view->grab();
    tool.settle();
    QCOMPARE(tool.images.tileCount(), first); // there is none, and that is known
    // The one being decoded gives way to those that come into sight.
    tool.images.delay = std::chrono::hours(1);
    tool.press(Qt::Key_End, Qt::ControlModifier);
    QVERIFY(asks("broken 24"));
    tool.images.delay = std::chrono::milliseconds(0);
    tool.press(Qt::Key_Home, Qt::ControlModifier);
    tool.view->grab();
    QCOMPARE(tool.images.lastImage(), QByteArray("broken 24"));
    tool.press(Qt::Key_End, Qt::ControlModifier);
    QVERIFY(asks("broken 29"));
}

OSTRELLE_TEST(ClipboardModuleViewTest)
#include "ClipboardModuleViewTest.moc"
