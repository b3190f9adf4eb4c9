#include "files/AssetsModuleView.h"
#include "FilesFixture.h"
#include "StandInThumbnails.h"
#include "files/AssetGridView.h"
#include "files/AssetShelfService.h"
#include "files/AssetThumbnails.h"
#include "files/NoAudioPreview.h"
#include "files/ThumbnailProgress.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/DropOverlay.h"
#include "notch/controls/DropWell.h"
#include "notch/controls/GlyphButton.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QEnterEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace ostrelle;

class AssetsModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void wantsTheHeightOfItsRows_data();
    void wantsTheHeightOfItsRows();
    void listsTheShelfAfterAnyRunOfEdits();
    void selectsByKeys();
    void selectsByClicks();
    void removesByKeyAndBringsBack();
    void keepsTheCurrentTileClearOfTheFade();
    void badgesActWhereTheyAreSeen();
    void showsWhatIsPlayingWithoutThePointer();
    void offersNoPlayingWithoutAPlayer();
    void opensByDoubleClickAndReturn();
    void dragsOutWhatIsSelected();
    void offersTheTilesActionsInItsMenu();
    void takesDrops();
    void showsPicturesAndHowFarTheyAre();
    void showsAnIconAsSoonAsItIsLoaded();
    void paintsOnlyTheTileOfANewPicture();
    void looksTheSameAfterMovement();
    void isAListToAssistiveTechnology();
};

namespace {

/// The tool on files in "/a", the first one first.
struct OpenTool : FilesFixture
{
    explicit OpenTool(const QStringList &names, AudioPreview *player = nullptr)
        : preferred(player)
    {
        QStringList paths;
        for (const QString &name : names)
            paths.prepend(pathOf(name));
        for (const QString &path : std::as_const(paths))
            files.add(path.toUtf8());
        find(paths);
        shelf.addExisting(paths);
        view.emplace(AssetsModuleView::Surroundings{.shelf = shelf,
                                                    .thumbnails = thumbnails,
                                                    .presence = presence,
                                                    .preview = preferred != nullptr ? *preferred : preview,
                                                    .icons = platform.fileIcons(),
                                                    .opening = platform.fileOpening(),
                                                    .dragOut = platform.dragOut(),
                                                    .popups = platform.popups()},
                     context, nullptr);
        view->resize(588, static_cast<int>(*view->wantedBodyHeight()) - 106);
        view->show();
        view->activateWindow();
        view->appeared();
        settle();
    }

    static QString pathOf(const QString &name) { return QStringLiteral("/a/") + name; }
    static QString nameOf(const QString &path) { return path.mid(3); }
    static QString joined(const QStringList &paths)
    {
        QStringList names;
        for (const QString &path : paths)
            names.append(nameOf(path));
        return names.join(u' ');
    }

    void find(const QStringList &paths)
    {
        bool isFound = false;
        presence.ask(paths, &shelf, [&](const QList<FileFacts> &) { isFound = true; });
        QTRY_VERIFY(isFound);
    }
    /// The file goes, and that is found out.
    void lose(const QString &name)
    {
        files.remove(pathOf(name).toUtf8());
        const auto isGone = [&] {
            clock.advance(std::chrono::seconds(3));
            return !presence.facts(pathOf(name)).isPresent();
        };
        QTRY_VERIFY(isGone());
    }
    void settle()
    {
        QCoreApplication::processEvents();
        clock.advance(std::chrono::seconds(2));
    }
    AssetGridView &grid() { return view->grid(); }
    QString shown()
    {
        QStringList paths;
        for (const ShelfItem &item : shelf.items())
            paths.append(item.path);
        return joined(paths);
    }
    QString selected()
    {
        QStringList paths;
        for (const QUuid &id : grid().selectedIds()) {
            const auto item = std::find_if(shelf.items().begin(), shelf.items().end(),
                                           [&](const ShelfItem &candidate) { return candidate.id == id; });
            paths.append(item->path);
        }
        return joined(paths);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&grid(), key, modifiers);
        settle();
    }
    /// On the name, where nothing else is.
    QPointF nameAt(int row) { return grid().tileRect(row).topLeft() + QPointF(42, 76); }
    QPointF squareAt(int row) { return grid().tileRect(row).topLeft() + QPointF(42, 31); }
    /// On the part of the badge that is above the tile.
    QPointF removeBadgeAt(int row) { return grid().tileRect(row).topLeft() + QPointF(70.5, -4); }
    void mouse(QEvent::Type type, const QPointF &position, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const bool isMove = type == QEvent::MouseMove;
        isHeld = isMove ? isHeld : type != QEvent::MouseButtonRelease;
        QWidget *viewport = grid().viewport();
        QMouseEvent event(type, position, viewport->mapToGlobal(position), isMove ? Qt::NoButton : Qt::LeftButton,
                          isHeld ? Qt::LeftButton : Qt::NoButton, modifiers);
        QCoreApplication::sendEvent(viewport, &event);
    }
    void point(const QPointF &position)
    {
        mouse(QEvent::MouseMove, position);
        settle();
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(grid().viewport(), &event);
        settle();
    }
    void click(const QPointF &position, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        mouse(QEvent::MouseMove, position);
        mouse(QEvent::MouseButtonPress, position, modifiers);
        mouse(QEvent::MouseButtonRelease, position, modifiers);
        settle();
    }
    void doubleClick(const QPointF &position)
    {
        click(position);
        mouse(QEvent::MouseButtonDblClick, position);
        mouse(QEvent::MouseButtonRelease, position);
        settle();
    }
    void drag(const QPointF &from)
    {
        mouse(QEvent::MouseMove, from);
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, from + QPointF(2, 0));
        QVERIFY(!platform.dragOut().isRunning());
        mouse(QEvent::MouseMove, from + QPointF(QApplication::startDragDistance(), 4));
        QVERIFY(platform.dragOut().isRunning());
        platform.dragOut().end(DragOut::Outcome::Dropped);
        mouse(QEvent::MouseButtonRelease, from);
        settle();
    }
    QStringList openMenuOn(int row)
    {
        const QPoint place = nameAt(row).toPoint();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, grid().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(grid().viewport(), &event);
        QStringList texts;
        for (const QAction *action : platform.popups().menu()->actions())
            texts.append(action->text());
        return texts;
    }
    void trigger(int action)
    {
        platform.popups().menu()->actions().at(action)->trigger();
        settle();
    }
    QImage picture() { return view->grab().toImage(); }

    JsonListStore<ShelfItem> store{folder.path()};
    AudioPreview *preferred;
    AssetShelfService shelf{store, presence, preview, haptics};
    StandInThumbnails source;
    AssetThumbnails thumbnails{&source, presence};
    NotchAppearance appearance{settings, platform.appearance()};
    FrameClock frames{clock};
    ControlContext context{.appearance = appearance, .clock = frames};
    std::optional<AssetsModuleView> view;
    bool isHeld = false;
};

/// What is painted of a widget from now on.
class PaintedRegion : public QObject
{
public:
    explicit PaintedRegion(QWidget &widget) { widget.installEventFilter(this); }
    const QRegion &region() const { return m_region; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent *>(event)->region();
        return false;
    }

private:
    QRegion m_region;
};

QStringList numbered(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(QString::number(i));
    return names;
}

} // namespace

void AssetsModuleViewTest::wantsTheHeightOfItsRows_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("height");
    QTest::newRow("none") << 0 << 264.0;
    QTest::newRow("one") << 1 << 214.0;
    QTest::newRow("a full row") << 6 << 214.0;
    QTest::newRow("two rows") << 7 << 308.0;
    QTest::newRow("more than fit") << 20 << 336.0;
}

void AssetsModuleViewTest::wantsTheHeightOfItsRows()
{
    QFETCH(int, count);
    OpenTool tool(numbered(count));
    QTEST(*tool.view->wantedBodyHeight(), "height");
    const QList<QWidget *> actions = tool.view->headerActions();
    QCOMPARE(actions.size(), count == 0 ? 0 : 2);
    QCOMPARE(tool.view->findChild<DropWell *>()->isVisible(), count == 0);
    if (count == 0)
        return;
    QSignalSpy heights(&*tool.view, &ToolView::wantedBodyHeightChanged);
    QSignalSpy changes(&*tool.view, &ToolView::headerActionsChanged);
    QCOMPARE(actions.first()->accessibleName(),
             count == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(count));
    static_cast<GlyphButton *>(actions.last())->click();
    QCOMPARE(*tool.view->wantedBodyHeight(), 264.0);
    QVERIFY(tool.view->headerActions().isEmpty());
    QVERIFY(tool.view->findChild<DropWell *>()->isVisible());
    QCOMPARE(heights.size(), 1);
    QCOMPARE(changes.size(), 1);
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.shelf.items().size(), count);
}

void AssetsModuleViewTest::listsTheShelfAfterAnyRunOfEdits()
{
    OpenTool tool(numbered(8));
    const QAbstractItemModel &model = *tool.grid().model();
    QAbstractItemModelTester tester(tool.grid().model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QRandomGenerator random(7);
    for (int i = 0; i < 60; ++i) {
        const int count = static_cast<int>(tool.shelf.items().size());
        if (random.bounded(3) == 0 && count > 1)
            tool.shelf.remove({tool.shelf.items()[random.bounded(count)].id, tool.shelf.items().last().id});
        else if (random.bounded(4) == 0)
            tool.shelf.undo();
        else
            tool.shelf.addExisting({QStringLiteral("/a/n%1").arg(i), QStringLiteral("/a/m%1").arg(i)});
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row)
            names.append(model.index(row, 0).data().toString());
        QCOMPARE(names.join(u' '), tool.shown());
        tool.view->grab();
    }
}

void AssetsModuleViewTest::selectsByKeys()
{
    OpenTool tool(numbered(14));
    const auto after = [&tool](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        tool.press(key, modifiers);
        return tool.selected();
    };
    QCOMPARE(tool.selected(), QString());
    QCOMPARE(after(Qt::Key_Right), QStringLiteral("0"));
    QCOMPARE(after(Qt::Key_Up), QStringLiteral("0"));
    QCOMPARE(after(Qt::Key_Right), QStringLiteral("1"));
    QCOMPARE(after(Qt::Key_Down), QStringLiteral("7"));
    QCOMPARE(after(Qt::Key_Down), QStringLiteral("13"));
    QCOMPARE(after(Qt::Key_Right), QStringLiteral("13"));
    QCOMPARE(after(Qt::Key_Up), QStringLiteral("7"));
    QCOMPARE(after(Qt::Key_End), QStringLiteral("13"));
    QCOMPARE(after(Qt::Key_Left), QStringLiteral("12"));
    QCOMPARE(after(Qt::Key_Up, Qt::ShiftModifier), QStringLiteral("6 7 8 9 10 11 12"));
    QCOMPARE(after(Qt::Key_Right, Qt::ShiftModifier), QStringLiteral("7 8 9 10 11 12"));
    QCOMPARE(after(Qt::Key_Home), QStringLiteral("0"));
    QCOMPARE(after(Qt::Key_A, Qt::ControlModifier), numbered(14).join(u' '));
    // The ring is on one of them, and only after keys.
    QVERIFY(tool.grid().tile(0).showsFocus);
    QVERIFY(!tool.grid().tile(1).showsFocus);
    tool.click(tool.nameAt(1));
    QVERIFY(!tool.grid().tile(1).showsFocus);
}

void AssetsModuleViewTest::selectsByClicks()
{
    OpenTool tool(numbered(14));
    const auto after = [&tool](int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        tool.click(tool.nameAt(row), modifiers);
        return tool.selected();
    };
    QCOMPARE(after(2), QStringLiteral("2"));
    QCOMPARE(after(4, Qt::ControlModifier), QStringLiteral("2 4"));
    QCOMPARE(after(7, Qt::ShiftModifier), QStringLiteral("4 5 6 7"));
    QCOMPARE(after(1, Qt::ShiftModifier), QStringLiteral("1 2 3 4"));
    QCOMPARE(after(3, Qt::ControlModifier), QStringLiteral("1 2 4"));
    QCOMPARE(after(2), QStringLiteral("2"));
    // Between the tiles.
    tool.click(tool.grid().tileRect(0).topRight() + QPointF(4, 40));
    QCOMPARE(tool.selected(), QString());
}

void AssetsModuleViewTest::removesByKeyAndBringsBack()
{
    OpenTool tool(numbered(5));
    tool.click(tool.nameAt(1));
    tool.press(Qt::Key_Right, Qt::ShiftModifier);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.shown(), QStringLiteral("0 3 4"));
    QCOMPARE(tool.selected(), QStringLiteral("3"));
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.shown(), QStringLiteral("0 1 2 3 4"));
    tool.press(Qt::Key_End);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.selected(), QStringLiteral("3"));
}

void AssetsModuleViewTest::keepsTheCurrentTileClearOfTheFade()
{
    OpenTool tool(numbered(60));
    const double height = tool.grid().viewport()->height();
    int row = 0;
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up,
                              Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}) {
        tool.press(key);
        row = tool.selected().toInt();
        const QRectF tile = tool.grid().tileRect(row);
        QVERIFY(tile.top() >= 12);
        QVERIFY(tile.top() + tile.height() <= height - (row < 54 ? 22 : 12));
    }
    QCOMPARE(row, 0);
    QCOMPARE(tool.grid().tileRect(0).top(), 12.0);
}

void AssetsModuleViewTest::badgesActWhereTheyAreSeen()
{
    OpenTool tool(QStringList({QStringLiteral("a.mp3"), QStringLiteral("b.png")}) + numbered(6));
    const auto toolTip = [&tool] { return tool.grid().viewport()->toolTip(); };
    // Above a tile that the pointer was not on there is no badge.
    tool.click(tool.removeBadgeAt(6));
    QCOMPARE(tool.shelf.items().size(), 8);
    tool.point(tool.nameAt(6));
    QCOMPARE(tool.grid().tile(6).hover, 1.0);
    QCOMPARE(toolTip(), QStringLiteral("/a/4"));
    // A menu opens over it, and closes.
    QEvent leaves(QEvent::Leave);
    QApplication::sendEvent(tool.grid().viewport(), &leaves);
    tool.settle();
    QCOMPARE(tool.grid().tile(6).hover, 0.0);
    QEnterEvent comesBack(tool.nameAt(6), tool.nameAt(6), tool.nameAt(6));
    QApplication::sendEvent(tool.grid().viewport(), &comesBack);
    tool.settle();
    QCOMPARE(tool.grid().tile(6).hover, 1.0);
    tool.point(tool.removeBadgeAt(6));
    QCOMPARE(tool.grid().tile(6).hover, 1.0);
    QCOMPARE(toolTip(), QStringLiteral("Remove from shelf"));
    tool.mouse(QEvent::MouseButtonPress, tool.removeBadgeAt(6));
    tool.mouse(QEvent::MouseMove, tool.nameAt(6));
    tool.mouse(QEvent::MouseButtonRelease, tool.nameAt(6));
    QCOMPARE(tool.shelf.items().size(), 8);
    tool.click(tool.removeBadgeAt(6));
    QCOMPARE(tool.shown(), QStringLiteral("a.mp3 b.png 0 1 2 3 5"));

    tool.point(tool.squareAt(0));
    QCOMPARE(tool.grid().tile(0).playBadge, 1.0);
    QCOMPARE(toolTip(), QStringLiteral("Play"));
    tool.click(tool.squareAt(0));
    QCOMPARE(tool.preview.playingPath(), QStringLiteral("/a/a.mp3"));
    QCOMPARE(toolTip(), QStringLiteral("Stop"));
    QCOMPARE(tool.selected(), QString());
    tool.click(tool.squareAt(1));
    QCOMPARE(tool.grid().tile(1).playBadge, 0.0);
    QCOMPARE(tool.selected(), QStringLiteral("b.png"));
    QCOMPARE(tool.preview.playingPath(), QStringLiteral("/a/a.mp3"));
}

void AssetsModuleViewTest::showsWhatIsPlayingWithoutThePointer()
{
    OpenTool tool({QStringLiteral("a.mp3"), QStringLiteral("b.flac"), QStringLiteral("c.png")});
    tool.press(Qt::Key_Right);
    tool.press(Qt::Key_Space);
    tool.leave();
    AssetTile playing = tool.grid().tile(0);
    QCOMPARE(playing.playingRing, 1.0);
    QCOMPARE(playing.playBadge, 1.0);
    QCOMPARE(playing.hover, 0.0);
    QVERIFY(playing.isPlaying);
    tool.press(Qt::Key_Right);
    tool.press(Qt::Key_Space);
    playing = tool.grid().tile(0);
    QCOMPARE(playing.playingRing + playing.playBadge, 0.0);
    QCOMPARE(tool.grid().tile(1).playingRing, 1.0);
    // Not everything can be played.
    tool.press(Qt::Key_Right);
    tool.press(Qt::Key_Space);
    QCOMPARE(tool.preview.playingPath(), QStringLiteral("/a/b.flac"));
}

void AssetsModuleViewTest::offersNoPlayingWithoutAPlayer()
{
    NoAudioPreview none;
    OpenTool tool({QStringLiteral("a.mp3")}, &none);
    tool.click(tool.squareAt(0));
    QCOMPARE(tool.grid().tile(0).playBadge, 0.0);
    QCOMPARE(tool.selected(), QStringLiteral("a.mp3"));
    QCOMPARE(tool.openMenuOn(0).first(), QStringLiteral("Open"));
}

void AssetsModuleViewTest::opensByDoubleClickAndReturn()
{
    OpenTool tool(numbered(8));
    const QStringList &opened = tool.platform.fileOpening().opened;
    tool.doubleClick(tool.nameAt(3));
    QCOMPARE(OpenTool::joined(opened), QStringLiteral("3"));
    tool.press(Qt::Key_Right, Qt::ShiftModifier);
    tool.press(Qt::Key_Return);
    QCOMPARE(OpenTool::joined(opened), QStringLiteral("3 3 4"));
    // The first press removed what was there: the second one is not on the same tile.
    tool.click(tool.nameAt(0));
    tool.shelf.remove({tool.shelf.items().first().id});
    tool.mouse(QEvent::MouseButtonDblClick, tool.nameAt(0));
    tool.mouse(QEvent::MouseButtonRelease, tool.nameAt(0));
    QCOMPARE(opened.size(), 3);
}

void AssetsModuleViewTest::dragsOutWhatIsSelected()
{
    OpenTool tool(numbered(8));
    const FakeDragOut &dragOut = tool.platform.dragOut();
    tool.drag(tool.nameAt(2));
    QCOMPARE(OpenTool::joined(dragOut.drag().paths), QStringLiteral("2"));
    const QImage single = dragOut.drag().picture.toImage();
    QCOMPARE(dragOut.drag().picture.deviceIndependentSize(), QSizeF(56, 56));
    QCOMPARE(dragOut.drag().hotSpot, QPoint(28, 28));

    tool.click(tool.nameAt(5), Qt::ControlModifier);
    tool.click(tool.nameAt(7), Qt::ControlModifier);
    tool.lose(QStringLiteral("5"));
    tool.drag(tool.nameAt(7));
    QCOMPARE(OpenTool::joined(dragOut.drag().paths), QStringLiteral("2 7"));
    QVERIFY(dragOut.drag().picture.toImage() != single);
    QCOMPARE(tool.selected(), QStringLiteral("2 5 7"));
    // Another one goes alone.
    tool.drag(tool.nameAt(0));
    QCOMPARE(OpenTool::joined(dragOut.drag().paths), QStringLiteral("0"));
    // A badge is no handle, and what is gone has nothing to give.
    tool.point(tool.nameAt(6));
    tool.mouse(QEvent::MouseButtonPress, tool.removeBadgeAt(6));
    tool.mouse(QEvent::MouseMove, tool.nameAt(6));
    tool.mouse(QEvent::MouseButtonRelease, tool.nameAt(6));
    tool.mouse(QEvent::MouseButtonPress, tool.nameAt(5));
    tool.mouse(QEvent::MouseMove, tool.nameAt(4));
    QCOMPARE(dragOut.count(), 3);
}

void AssetsModuleViewTest::offersTheTilesActionsInItsMenu()
{
    OpenTool tool({QStringLiteral("a.mp3"), QStringLiteral("b.png"), QStringLiteral("c.png")});
    const FakeFileOpening &opening = tool.platform.fileOpening();
    const QStringList plain{QStringLiteral("Open"), QStringLiteral("Reveal in Finder"), QString(),
                            QStringLiteral("Remove from Shelf")};
    QCOMPARE(tool.openMenuOn(0), QStringList(QStringLiteral("Play")) + plain);
    tool.trigger(0);
    QCOMPARE(tool.preview.playingPath(), QStringLiteral("/a/a.mp3"));
    QCOMPARE(tool.openMenuOn(0).first(), QStringLiteral("Stop"));
    QCOMPARE(tool.openMenuOn(1), plain);
    QCOMPARE(tool.selected(), QStringLiteral("b.png"));
    tool.trigger(0);
    tool.trigger(1);
    QCOMPARE(opening.opened, QStringList(QStringLiteral("/a/b.png")));
    QCOMPARE(opening.revealed, QStringList(QStringLiteral("/a/b.png")));
    // On one of several it is about all of them.
    tool.click(tool.nameAt(2), Qt::ControlModifier);
    tool.openMenuOn(1);
    tool.trigger(3);
    QCOMPARE(tool.shown(), QStringLiteral("a.mp3"));
}

void AssetsModuleViewTest::takesDrops()
{
    OpenTool tool({});
    const auto *overlay = tool.view->findChild<DropOverlay *>();
    QVERIFY(tool.view->acceptsDrop({QStringLiteral("/a/new")}));
    tool.view->setDropTargeted(true);
    QVERIFY(!overlay->isVisible());
    tool.files.add("/a/new");
    QVERIFY(tool.view->dropFiles({QStringLiteral("/a/new"), QStringLiteral("/a/nowhere")}));
    QTRY_COMPARE(tool.shown(), QStringLiteral("new"));
    // The files arrived while the drag still showed.
    QVERIFY(overlay->isVisible());
    tool.view->setDropTargeted(false);
    tool.settle();
    QVERIFY(!overlay->isVisible());
}

void AssetsModuleViewTest::showsPicturesAndHowFarTheyAre()
{
    OpenTool tool(numbered(12));
    const auto *progress = tool.view->findChild<ThumbnailProgress *>();
    tool.picture();
    QCOMPARE(OpenTool::joined(tool.source.waiting()), numbered(12).join(u' '));
    QVERIFY(progress->isVisible());
    QImage red(120, 90, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QPoint middle = tool.squareAt(0).toPoint();
    QCOMPARE(tool.picture().pixelColor(middle), QColor(Qt::blue)); // the desktop's icon
    while (!tool.source.waiting().isEmpty())
        tool.source.serve(red);
    tool.settle();
    QVERIFY(!progress->isVisible());
    QCOMPARE(tool.picture().pixelColor(middle), QColor(Qt::red));
    QCOMPARE(tool.picture().pixelColor(middle + QPoint(26, 0)), QColor(Qt::red));
    // What is gone has an icon again, dimmed.
    tool.lose(QStringLiteral("0"));
    QVERIFY(tool.grid().tile(0).isMissing);
    const QColor dimmed = tool.picture().pixelColor(middle);
    QVERIFY(dimmed.blue() > dimmed.red() && dimmed != QColor(Qt::blue));
}

void AssetsModuleViewTest::showsAnIconAsSoonAsItIsLoaded()
{
    OpenTool tool({QStringLiteral("0")});
    const QPoint middle = tool.squareAt(0).toPoint();
    tool.platform.fileIcons().holdBack();
    const QColor plate = tool.picture().pixelColor(middle);
    QCOMPARE(tool.picture().pixelColor(middle + QPoint(0, 24)), plate); // and no symbol meanwhile
    PaintedRegion painted(*tool.grid().viewport());
    tool.platform.fileIcons().release();
    QCoreApplication::processEvents();
    QVERIFY(painted.region().contains(middle));
    QCOMPARE(tool.picture().pixelColor(middle), QColor(Qt::blue));
}

void AssetsModuleViewTest::paintsOnlyTheTileOfANewPicture()
{
    OpenTool tool(numbered(20));
    QWidget &viewport = *tool.grid().viewport();
    const auto *progress = tool.view->findChild<ThumbnailProgress *>(); // lies above
    QImage red(120, 90, QImage::Format_RGB32);
    red.fill(Qt::red);
    tool.picture();
    const auto drawn = [&viewport](QImage image, const QRegion &region) {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        for (const QRect &rect : region)
            painter.fillRect(rect, Qt::transparent);
        painter.end();
        viewport.render(&image, region.boundingRect().topLeft(), region, QWidget::DrawChildren);
        return image;
    };
    QImage blank(viewport.size(), QImage::Format_ARGB32_Premultiplied);
    blank.fill(Qt::transparent);
    // In the first row, and where the last one in sight fades out.
    for (const int row : {0, 13}) {
        while (tool.source.waiting().first() != OpenTool::pathOf(QString::number(row)))
            tool.source.serve({});
        tool.settle();
        const QImage stale = drawn(blank, viewport.rect());
        PaintedRegion painted(viewport);
        tool.source.serve(red);
        QCoreApplication::processEvents();
        QVERIFY(painted.region().contains((tool.squareAt(row) - QPointF(0, 20)).toPoint()));
        const QRect tile = (painted.region() - progress->geometry()).boundingRect();
        QVERIFY(tile.width() < 110 && tile.height() < 110);
        const QImage fresh = drawn(blank, viewport.rect());
        QVERIFY(fresh != stale);
        QCOMPARE(drawn(stale, painted.region()), fresh);
    }
}

void AssetsModuleViewTest::looksTheSameAfterMovement()
{
    OpenTool fresh(numbered(20));
    OpenTool used(numbered(22));
    used.drag(used.nameAt(3));
    used.click(used.nameAt(20));
    used.press(Qt::Key_Delete);
    used.press(Qt::Key_Delete);
    QCOMPARE(used.shown(), fresh.shown());
    used.press(Qt::Key_Home);
    used.press(Qt::Key_Delete);
    // In the middle of one movement another one begins.
    used.clock.advance(std::chrono::milliseconds(60));
    used.picture();
    used.shelf.undo();
    used.clock.advance(std::chrono::milliseconds(60));
    QVERIFY(used.picture() != fresh.picture());
    used.point(used.nameAt(4));
    used.leave();
    used.click(used.grid().tileRect(0).topRight() + QPointF(4, 40));
    used.leave();
    QCOMPARE(used.picture(), fresh.picture());
}

void AssetsModuleViewTest::isAListToAssistiveTechnology()
{
    OpenTool tool({QStringLiteral("a.mp3"), QStringLiteral("b.png")});
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&tool.grid());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Shelf"));
    QCOMPARE(list->childCount(), 2);
    tool.press(Qt::Key_Right);
    tool.press(Qt::Key_Space);
    QAccessibleInterface *tile = list->child(0);
    QCOMPARE(tile->text(QAccessible::Name), QStringLiteral("a.mp3, playing"));
    QCOMPARE(tile->text(QAccessible::Description), QStringLiteral("/a/a.mp3"));
    QVERIFY(tile->state().selected);
    QVERIFY(!list->child(1)->state().selected);
    QCOMPARE(tile->rect().size(), QSize(84, 84));
}

OSTRELLE_TEST(AssetsModuleViewTest)
#include "AssetsModuleViewTest.moc"
