#include "files/ProjectsModuleView.h"
#include "FilesFixture.h"
#include "files/ProjectsService.h"
#include "files/RenameField.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/FilledButton.h"
#include "notch/controls/GlyphButton.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QMenu>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

class ProjectsModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void wantsTheHeightOfItsProjects();
    void showsTheListAfterAnyRunOfEdits();
    void draggedRowsTakeThePlaceUnderThePointer();
    void aDragNeitherClicksNorSurvivesItsRow();
    void scrollsToPlacesBeyondTheEdge();
    void movesByKeysAndTakesItBack();
    void opensPresentFoldersAndDismisses();
    void renamesInPlace();
    void goingElsewhereTakesTheNameAndNothingElse();
    void removesByKeyAndBringsBack();
    void showsTheActionsUnderThePointerOnly();
    void offersTheRowsActionsInItsMenu();
    void takesDropsWithNewFoldersOnly();
    void asksForFoldersByBothButtons();
    void shortensTheHome_data();
    void shortensTheHome();
};

namespace {

/// The tool on projects that are called A, B, C and so on.
struct OpenTool : FilesFixture
{
    explicit OpenTool(int count)
    {
        QStringList folders;
        for (int i = 0; i < count; ++i) {
            folders.append(QStringLiteral("/work/") + QChar(u'A' + i));
            files.add(folders.last().toUtf8(), FileLookUp::Entry::Kind::Folder);
        }
        service.addFolders(folders);
        QObject::connect(&view, &ToolView::dismissRequested, &view, [this] { ++dismissals; });
        window.resize(588, 230);
        view.setParent(&window);
        view.resize(588, static_cast<int>(*view.wantedBodyHeight()) - 106);
        window.show();
        window.activateWindow();
        view.appeared();
        settle();
    }

    void settle()
    {
        QCoreApplication::processEvents();
        clock.advance(std::chrono::seconds(2));
    }
    QString names()
    {
        QString names;
        for (int row = 0; row < view.list().model()->rowCount(); ++row)
            names += view.list().model()->index(row, 0).data().toString();
        return names;
    }
    QString active()
    {
        const int row = view.list().activeRow();
        return row < 0 ? QString() : view.list().model()->index(row, 0).data().toString();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window.focusWidget(), key, modifiers);
        settle();
    }
    QPointF centreOf(int row) { return view.list().plateOf(row).center(); }
    void mouse(QEvent::Type type, const QPointF &position, Qt::MouseButtons buttons)
    {
        QWidget *viewport = view.list().viewport();
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, position, viewport->mapToGlobal(position), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    }
    void grip(const QPointF &position) { mouse(QEvent::MouseButtonPress, position, Qt::LeftButton); }
    void drag(const QPointF &position) { mouse(QEvent::MouseMove, position, Qt::LeftButton); }
    void release(const QPointF &position)
    {
        mouse(QEvent::MouseButtonRelease, position, Qt::NoButton);
        settle();
    }
    void point(const QPointF &position)
    {
        mouse(QEvent::MouseMove, position, Qt::NoButton);
        settle();
    }
    void click(int row)
    {
        grip(centreOf(row));
        release(centreOf(row));
    }
    GlyphButton *shownAction(const QString &help)
    {
        for (auto *button : view.list().findChildren<GlyphButton *>()) {
            if (button->isVisible() && button->toolTip() == help)
                return button;
        }
        return nullptr;
    }
    RenameField &field() { return view.list().renameField(); }

    int dismissals = 0;
    FrameClock frames{clock};
    NotchAppearance appearance{settings, platform.appearance()};
    JsonListStore<Project> store{folder.path()};
    FakeFileOpening &opening = platform.fileOpening();
    ProjectsService service{store, presence, haptics, picker, controller};
    QWidget window;
    ProjectsModuleView view{service, presence, opening, clipboard, platform.popups(), {appearance, frames}, nullptr};
    QAbstractItemModelTester tester{view.list().model(), QAbstractItemModelTester::FailureReportingMode::QtTest};
};

} // namespace

void ProjectsModuleViewTest::wantsTheHeightOfItsProjects()
{
    OpenTool tool(3);
    QSignalSpy changes(&tool.view, &ToolView::wantedBodyHeightChanged);
    QCOMPARE(tool.view.wantedBodyHeight(), 254.0);
    tool.service.addFolders({QStringLiteral("/x"), QStringLiteral("/y"), QStringLiteral("/z")});
    QCOMPARE(tool.view.wantedBodyHeight(), 336.0);
    while (!tool.service.projects().isEmpty())
        tool.service.remove(tool.service.projects().first().id);
    QCOMPARE(tool.view.wantedBodyHeight(), 272.0);
    // From three to six and, by way of the same height with five, down to none.
    QCOMPARE(changes.size(), 6);
}

void ProjectsModuleViewTest::showsTheListAfterAnyRunOfEdits()
{
    OpenTool tool(5);
    QRandomGenerator random(7);
    for (int i = 0; i < 300; ++i) {
        const auto count = static_cast<int>(tool.service.projects().size());
        const QUuid id = count > 0 ? tool.service.projects().at(random.bounded(count)).id : QUuid();
        switch (random.bounded(5)) {
        case 0:
            tool.service.addFolders({QStringLiteral("/n%1").arg(i), QStringLiteral("/m%1").arg(i)});
            break;
        case 1:
            tool.service.remove(id);
            break;
        case 2:
            tool.service.rename(id, QString::number(i));
            break;
        case 3:
            tool.service.move({random.bounded(count + 1)}, random.bounded(count + 1));
            break;
        case 4:
            tool.service.undo();
            break;
        }
        QString expected;
        for (const Project &project : tool.service.projects())
            expected += project.displayName;
        QCOMPARE(tool.names(), expected);
    }
}

void ProjectsModuleViewTest::draggedRowsTakeThePlaceUnderThePointer()
{
    OpenTool tool(3);
    tool.grip(tool.centreOf(0));
    tool.drag(tool.centreOf(0) + QPointF(0, 5));
    QCOMPARE(tool.names(), QStringLiteral("ABC"));
    const QPointF overC = tool.centreOf(2) + QPointF(0, 3);
    tool.drag(overC);
    QCOMPARE(tool.names(), QStringLiteral("BCA"));
    // Held where it was taken, within the list.
    tool.settle();
    QCOMPARE(tool.view.list().plateOf(2).y(), 96.0);
    tool.drag(overC - QPointF(0, 30));
    QCOMPARE(tool.names(), QStringLiteral("BAC"));
    QCOMPARE(tool.view.list().plateOf(1).y(), 69.0);
    tool.drag(overC);
    tool.release(overC);
    QCOMPARE(tool.view.list().plateOf(2).y(), 96.0);
    QCOMPARE(tool.names(), QStringLiteral("BCA"));
    QVERIFY(tool.store.flush());
    QCOMPARE(JsonListStore<Project>(tool.folder.path()).load(), tool.service.projects());
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.names(), QStringLiteral("ABC"));

    const QPointF overA = tool.centreOf(0);
    tool.grip(tool.centreOf(2));
    tool.drag(overA);
    QCOMPARE(tool.names(), QStringLiteral("CAB"));
    tool.press(Qt::Key_Delete);
    tool.press(Qt::Key_Escape);
    QCOMPARE(tool.names(), QStringLiteral("ABC"));
    QCOMPARE(tool.view.list().plateOf(2).y(), 96.0);
    tool.drag(overA);
    tool.release(overA);
    QCOMPARE(tool.names(), QStringLiteral("ABC"));
    QVERIFY(!tool.service.canUndo());
}

void ProjectsModuleViewTest::aDragNeitherClicksNorSurvivesItsRow()
{
    OpenTool tool(3);
    const QPointF start = tool.centreOf(1);
    tool.grip(start);
    tool.drag(start + QPointF(30, 0));
    tool.drag(start);
    tool.release(start);
    QCOMPARE(tool.opening.opened, QStringList());
    QCOMPARE(tool.active(), QStringLiteral("B"));

    tool.grip(tool.centreOf(0));
    tool.drag(tool.centreOf(1));
    tool.service.remove(tool.service.projects().at(1).id);
    QVERIFY(!tool.view.list().isDragging());
    tool.drag(tool.centreOf(0));
    tool.release(tool.centreOf(0));
    QCOMPARE(tool.names(), QStringLiteral("BC"));
    QCOMPARE(tool.opening.opened, QStringList());
}

void ProjectsModuleViewTest::scrollsToPlacesBeyondTheEdge()
{
    OpenTool tool(12);
    const QPointF bottom(100, 225);
    tool.grip(tool.centreOf(0));
    tool.drag(bottom);
    QCOMPARE(tool.names().indexOf(u'A'), 4);
    tool.settle();
    QCOMPARE(tool.names().indexOf(u'A'), 11);
    tool.release(bottom);
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.names(), QStringLiteral("ABCDEFGHIJKL"));
}

void ProjectsModuleViewTest::movesByKeysAndTakesItBack()
{
    OpenTool tool(3);
    QCOMPARE(tool.active(), QString());
    tool.press(Qt::Key_Down);
    QCOMPARE(tool.active(), QStringLiteral("A"));
    tool.press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(tool.names(), QStringLiteral("ABC"));
    tool.press(Qt::Key_Down, Qt::AltModifier);
    tool.press(Qt::Key_Down, Qt::AltModifier);
    tool.press(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tool.names(), QStringLiteral("BCA"));
    QCOMPARE(tool.active(), QStringLiteral("A"));
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.names(), QStringLiteral("BAC"));
    tool.press(Qt::Key_Down);
    tool.press(Qt::Key_Down);
    QCOMPARE(tool.active(), QStringLiteral("C"));
    // What is typed finds nothing and changes nothing.
    tool.press(Qt::Key_B);
    QCOMPARE(tool.active(), QStringLiteral("C"));
}

void ProjectsModuleViewTest::opensPresentFoldersAndDismisses()
{
    OpenTool tool(3);
    tool.files.remove("/work/B");
    const auto description = [&](int row) {
        tool.clock.advance(FilePresence::kFreshness);
        return tool.view.list().model()->index(row, 0).data(Qt::AccessibleDescriptionRole).toString();
    };
    QTRY_COMPARE(description(1), QStringLiteral("Missing — folder moved or deleted"));
    QCOMPARE(description(0), QStringLiteral("/work"));

    tool.click(1);
    tool.point(tool.centreOf(1));
    tool.press(Qt::Key_Return);
    QCOMPARE(tool.dismissals, 0);
    tool.click(2);
    QCOMPARE(tool.dismissals, 1);
    tool.press(Qt::Key_Up);
    tool.press(Qt::Key_Up);
    tool.press(Qt::Key_Return);
    QCOMPARE(tool.dismissals, 2);
    QCOMPARE(tool.opening.opened, (QStringList{QStringLiteral("/work/C"), QStringLiteral("/work/A")}));
}

void ProjectsModuleViewTest::renamesInPlace()
{
    OpenTool tool(2);
    tool.press(Qt::Key_End);
    tool.press(Qt::Key_F2);
    QCOMPARE(tool.field().selectedText(), QStringLiteral("B"));
    QVERIFY(tool.view.list().plateOf(1).contains(QRectF(tool.field().geometry())));
    QTest::keyClicks(&tool.field(), QStringLiteral(" Summer "));
    // Keys that a line of text has no use for stay with it too.
    tool.press(Qt::Key_Up, Qt::AltModifier);
    tool.press(Qt::Key_Return);
    QCOMPARE(tool.names(), QStringLiteral("ASummer"));
    QVERIFY(!tool.field().isVisible());

    tool.press(Qt::Key_F2);
    QTest::keyClicks(&tool.field(), QStringLiteral("never"));
    tool.press(Qt::Key_Escape);
    QCOMPARE(tool.names(), QStringLiteral("ASummer"));
    QVERIFY(tool.view.list().hasFocus());

    tool.press(Qt::Key_F2);
    QTest::keyClicks(&tool.field(), QStringLiteral("  "));
    tool.press(Qt::Key_Enter);
    QCOMPARE(tool.names(), QStringLiteral("AB"));
    QCOMPARE(tool.dismissals, 0);
}

void ProjectsModuleViewTest::goingElsewhereTakesTheNameAndNothingElse()
{
    OpenTool tool(2);
    tool.view.list().beginRename(tool.view.list().idAt(0));
    QTest::keyClicks(&tool.field(), QStringLiteral("X"));
    tool.click(1);
    QCOMPARE(tool.names(), QStringLiteral("XB"));
    QCOMPARE(tool.opening.opened, QStringList());
    tool.click(1);
    QCOMPARE(tool.opening.opened, QStringList{QStringLiteral("/work/B")});

    // Where nothing takes the press, nor the focus.
    tool.view.list().beginRename(tool.view.list().idAt(0));
    QTest::keyClicks(&tool.field(), QStringLiteral("V"));
    QTest::mousePress(&tool.field(), Qt::LeftButton);
    QVERIFY(tool.field().isRenaming());
    QTest::mousePress(&tool.window, Qt::LeftButton);
    QCOMPARE(tool.names(), QStringLiteral("VB"));
    QVERIFY(!tool.field().isVisible());

    tool.view.list().beginRename(tool.view.list().idAt(0));
    QTest::keyClicks(&tool.field(), QStringLiteral("Y"));
    tool.view.list().beginRename(tool.view.list().idAt(1));
    QCOMPARE(tool.names(), QStringLiteral("YB"));
    QTest::keyClicks(&tool.field(), QStringLiteral("Z"));
    // The row may go in the meantime, and so may the view.
    tool.service.remove(tool.service.projects().at(1).id);
    QVERIFY(!tool.field().isVisible());
    tool.view.list().beginRename(tool.view.list().idAt(0));
    QTest::keyClicks(&tool.field(), QStringLiteral("W"));
    tool.view.hide();
    QCOMPARE(tool.names(), QStringLiteral("W"));
}

void ProjectsModuleViewTest::removesByKeyAndBringsBack()
{
    OpenTool tool(3);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.names(), QStringLiteral("ABC"));
    tool.press(Qt::Key_End);
    tool.press(Qt::Key_Delete);
    QCOMPARE(tool.names(), QStringLiteral("AB"));
    QCOMPARE(tool.active(), QStringLiteral("B"));
    tool.press(Qt::Key_Delete);
    tool.press(Qt::Key_Delete);
    QVERIFY(tool.view.list().isHidden());
    QCOMPARE(tool.view.wantedBodyHeight(), 272.0);
    // The focus went to what is there now.
    tool.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.names(), QStringLiteral("A"));
    QVERIFY(tool.view.list().hasFocus());
}

void ProjectsModuleViewTest::showsTheActionsUnderThePointerOnly()
{
    OpenTool tool(4);
    QVERIFY(!tool.shownAction(QStringLiteral("Rename")));
    tool.point(tool.centreOf(1));
    GlyphButton *remove = tool.shownAction(QStringLiteral("Remove"));
    QVERIFY(remove && tool.view.list().plateOf(1).contains(QRectF(remove->geometry())));
    tool.shownAction(QStringLiteral("Reveal in Finder"))->click();
    QCOMPARE(tool.opening.revealed, QStringList{QStringLiteral("/work/B")});
    // The next row comes under the resting pointer.
    remove->click();
    tool.settle();
    remove->click();
    tool.settle();
    QCOMPARE(tool.names(), QStringLiteral("AD"));
    QVERIFY(tool.view.list().plateOf(1).contains(QRectF(remove->geometry())));

    tool.press(Qt::Key_Up);
    QCOMPARE(tool.active(), QStringLiteral("A"));
    QVERIFY(!tool.shownAction(QStringLiteral("Rename")));
    tool.point(tool.centreOf(1) + QPointF(1, 0));
    tool.shownAction(QStringLiteral("Rename"))->click();
    QVERIFY(tool.field().hasFocus());
    QVERIFY(!tool.shownAction(QStringLiteral("Rename")));
    tool.press(Qt::Key_Escape);
    tool.point(tool.centreOf(0));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(tool.view.list().viewport(), &leave);
    QCOMPARE(tool.active(), QString());
    QVERIFY(!tool.shownAction(QStringLiteral("Rename")));
    QCOMPARE(tool.opening.opened, QStringList());
}

void ProjectsModuleViewTest::offersTheRowsActionsInItsMenu()
{
    OpenTool tool(2);
    const auto choose = [&tool](int action) {
        const QPoint place = tool.centreOf(1).toPoint();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, tool.view.list().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(tool.view.list().viewport(), &event);
        QMenu *menu = tool.platform.popups().menu();
        QStringList texts;
        for (const QAction *entry : menu->actions())
            texts.append(entry->text());
        menu->actions().at(action)->trigger();
        menu->close();
        QCoreApplication::processEvents();
        return texts;
    };
    QCOMPARE(choose(0), (QStringList{QStringLiteral("Open in Finder"), QStringLiteral("Reveal in Finder"),
                                     QStringLiteral("Rename…"), QString(), QStringLiteral("Remove")}));
    choose(1);
    QCOMPARE(tool.opening.opened, QStringList{QStringLiteral("/work/B")});
    QCOMPARE(tool.opening.revealed, QStringList{QStringLiteral("/work/B")});
    choose(2);
    QVERIFY(tool.field().isRenaming());
    choose(4);
    QCOMPARE(tool.names(), QStringLiteral("A"));
}

void ProjectsModuleViewTest::takesDropsWithNewFoldersOnly()
{
    OpenTool tool(1);
    tool.files.add("/file");
    tool.files.add("/new", FileLookUp::Entry::Kind::Folder);
    const QString file = QStringLiteral("/file");
    const QString fresh = QStringLiteral("/new");
    bool isKnown = false;
    tool.presence.ask({file, fresh}, &tool.view, [&](const QList<FileFacts> &) { isKnown = true; });
    QTRY_VERIFY(isKnown);
    QVERIFY(!tool.view.acceptsDrop({file, QStringLiteral("/work/./A")}));
    QVERIFY(!tool.view.dropFiles({file}));
    QVERIFY(tool.view.acceptsDrop({file, fresh}));
    QVERIFY(tool.view.dropFiles({file, fresh}));
    QCOMPARE(tool.names(), QStringLiteral("Anew"));
    // Nobody has looked there yet.
    QVERIFY(tool.view.acceptsDrop({QStringLiteral("/far/away")}));
}

void ProjectsModuleViewTest::asksForFoldersByBothButtons()
{
    OpenTool tool(0);
    auto *add = static_cast<GlyphButton *>(tool.view.headerActions().first());
    QCOMPARE(add->accessibleName(), QStringLiteral("Add project folder"));
    add->click();
    QVERIFY(tool.chooser.isOpen());
    tool.chooser.close({});
    tool.view.findChild<FilledButton *>()->click();
    QVERIFY(tool.chooser.isOpen());
}

void ProjectsModuleViewTest::shortensTheHome_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown");
    QTest::newRow("in home") << "/home/ann/Films"
                             << "~";
    QTest::newRow("deeper") << "/home/ann/Films/Ferry"
                            << "~/Films";
    QTest::newRow("home") << "/home/ann"
                          << "/home";
    QTest::newRow("another's") << "/home/anna/Films/Ferry"
                               << "/home/anna/Films";
    QTest::newRow("top") << "/srv"
                         << "/";
    QTest::newRow("root") << "/"
                          << "/";
}

void ProjectsModuleViewTest::shortensTheHome()
{
    QFETCH(QString, path);
    QTEST(shownParent(path, QStringLiteral("/home/ann")), "shown");
}

OSTRELLE_TEST(ProjectsModuleViewTest)
#include "ProjectsModuleViewTest.moc"
