#include "FilesFixture.h"

#include "files/ProjectsService.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <memory>

using namespace ostrelle;
using namespace std::chrono_literals;

class ProjectsServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void pinsFoldersOnlyAndOnce();
    void keepsTheOrderOfAdditions();
    void keepsFoldersThatAreGone();
    void renamesAndSaves();
    void theStepsOfOneDragAreUndoneTogether();
    void undoKeepsALaterName();
    void choosingPinsAndShowsTheProjects();
    void cancellingLetsTheNotchCloseAtOnce();

private:
    ProjectsService &projects() { return *m_projects; }
    QString names() const;
    bool closesOnAPressOutside();

    std::unique_ptr<FilesFixture> m_fixture;
    std::unique_ptr<JsonListStore<Project>> m_store;
    std::unique_ptr<ProjectsService> m_projects;
};

void ProjectsServiceTest::init()
{
    TestBase::init();
    m_projects.reset();
    m_store.reset();
    m_fixture = std::make_unique<FilesFixture>();
    for (const char *path : {"/A", "/B", "/C", "/D"})
        m_fixture->files.add(path, FileLookUp::Entry::Kind::Folder);
    m_fixture->files.add("/file");
    m_fixture->platform.screens().arrange({FakeScreens::make(QStringLiteral("one"), QRectF(0, 0, 1920, 1080))});
    m_fixture->platform.pointerNear().moveToScreen(QStringLiteral("one"));
    m_fixture->controller.start(m_fixture->panel);
    m_store = std::make_unique<JsonListStore<Project>>(m_fixture->folder.path());
    m_projects = std::make_unique<ProjectsService>(*m_store, m_fixture->presence, m_fixture->haptics, m_fixture->picker,
                                                   m_fixture->controller);
}

QString ProjectsServiceTest::names() const
{
    QString names;
    for (const Project &project : m_projects->projects())
        names += project.displayName;
    return names;
}

bool ProjectsServiceTest::closesOnAPressOutside()
{
    m_fixture->platform.outsideActivity().press();
    return m_fixture->viewModel.phase() != Phase::Expanded;
}

void ProjectsServiceTest::pinsFoldersOnlyAndOnce()
{
    int added = -1;
    const auto count = [&](int number) { added = number; };
    projects().add({QStringLiteral("/B"), QStringLiteral("/file"), QStringLiteral("/A/../B"), QStringLiteral("/none"),
                    QStringLiteral("/A")},
                   count);
    QTRY_COMPARE(added, 2);
    QCOMPARE(names(), QStringLiteral("BA"));
    QCOMPARE(m_fixture->ticks(), 1);
    projects().add({QStringLiteral("/A")}, count);
    QCOMPARE(added, 0);
    QCOMPARE(m_fixture->ticks(), 1);

    m_fixture->files.mount("/net");
    m_fixture->files.kill("/net");
    projects().add({QStringLiteral("/net/far")}, count);
    m_fixture->clock.advance(FilePresence::kDeadline);
    QCOMPARE(added, 1);
    QVERIFY(m_store->flush());
    QCOMPARE(JsonListStore<Project>(m_fixture->folder.path()).load(), projects().projects());
}

void ProjectsServiceTest::keepsTheOrderOfAdditions()
{
    m_fixture->files.mount("/net");
    m_fixture->files.add("/net/far", FileLookUp::Entry::Kind::Folder);
    m_fixture->files.kill("/net");
    QList<int> added;
    const auto count = [&](int number) { added << number; };
    projects().add({QStringLiteral("/net/far")}, count);
    projects().add({QStringLiteral("/B"), QStringLiteral("/file")}, count);
    // What an answer asks for waits for its turn, too.
    projects().add({QStringLiteral("/C")}, [&](int number) {
        count(number);
        projects().add({QStringLiteral("/D")}, count);
    });
    QTRY_COMPARE(m_fixture->files.hangingCount(), 1);
    QCOMPARE(names(), QString());
    m_fixture->clock.advance(FilePresence::kDeadline);
    QTRY_COMPARE(names(), QStringLiteral("farBCD"));
    QCOMPARE(added, QList<int>({1, 1, 1, 1}));
}

void ProjectsServiceTest::keepsFoldersThatAreGone()
{
    projects().addFolders({QStringLiteral("/A"), QStringLiteral("/B")});
    QVERIFY(m_store->flush());
    m_fixture->files.remove("/A");
    JsonListStore<Project> store(m_fixture->folder.path());
    const ProjectsService restarted(store, m_fixture->presence, m_fixture->haptics, m_fixture->picker,
                                    m_fixture->controller);
    QCOMPARE(restarted.projects(), projects().projects());
}

void ProjectsServiceTest::renamesAndSaves()
{
    projects().addFolders({QStringLiteral("/A")});
    const QUuid id = projects().projects().first().id;
    projects().rename(id, QStringLiteral("  Summer \n"));
    QCOMPARE(names(), QStringLiteral("Summer"));
    projects().rename(id, QStringLiteral("  "));
    QCOMPARE(names(), QStringLiteral("A"));
    projects().rename(QUuid::createUuid(), QStringLiteral("nobody"));
    QCOMPARE(names(), QStringLiteral("A"));
    QVERIFY(m_store->flush());
    QCOMPARE(JsonListStore<Project>(m_fixture->folder.path()).load(), projects().projects());
}

void ProjectsServiceTest::theStepsOfOneDragAreUndoneTogether()
{
    using Step = ProjectsService::Step;
    projects().addFolders({QStringLiteral("/A"), QStringLiteral("/B"), QStringLiteral("/C"), QStringLiteral("/D")});
    projects().move({3}, 0);
    QCOMPARE(names(), QStringLiteral("DABC"));
    projects().move({0}, 2, Step::First);
    projects().move({1}, 3, Step::Further);
    projects().move({2}, 4, Step::Further);
    QCOMPARE(names(), QStringLiteral("ABCD"));
    projects().undo();
    QCOMPARE(names(), QStringLiteral("DABC"));
    QVERIFY(!projects().canUndo());
    projects().move({0}, 1); // stays where it is
    QVERIFY(!projects().canUndo());
    projects().move({0}, 4);
    projects().lapse();
    QVERIFY(!projects().canUndo());
}

void ProjectsServiceTest::undoKeepsALaterName()
{
    projects().addFolders({QStringLiteral("/A"), QStringLiteral("/B"), QStringLiteral("/C")});
    projects().remove(projects().projects()[1].id);
    projects().rename(projects().projects()[0].id, QStringLiteral("Z"));
    projects().undo();
    QCOMPARE(names(), QStringLiteral("ZBC"));
}

void ProjectsServiceTest::choosingPinsAndShowsTheProjects()
{
    m_fixture->controller.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
    projects().promptToAdd();
    projects().promptToAdd(); // one is open already
    QCOMPARE(m_fixture->foreground.depth(), 1);
    QCOMPARE(m_fixture->chooser.choice().kind, FileChoice::Kind::Folders);
    QCOMPARE(m_fixture->chooser.choice().acceptLabel, QStringLiteral("Add Project"));
    QCOMPARE(m_fixture->chooser.choice().message, QStringLiteral("Choose the folders you want one click away."));
    QVERIFY(!closesOnAPressOutside());

    m_fixture->chooser.close({QStringLiteral("/A"), QStringLiteral("/B")});
    QTRY_COMPARE(names(), QStringLiteral("AB"));
    QCOMPARE(m_fixture->foreground.depth(), 0);
    QCOMPARE(m_fixture->viewModel.selection(), std::optional(KestroModule::Projects));
    m_fixture->clock.advance(399ms);
    QVERIFY(!closesOnAPressOutside());
    m_fixture->clock.advance(1ms);
    QVERIFY(closesOnAPressOutside());
}

void ProjectsServiceTest::cancellingLetsTheNotchCloseAtOnce()
{
    m_fixture->controller.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
    projects().promptToAdd();
    m_fixture->chooser.close({});
    QCOMPARE(names(), QString());
    QCOMPARE(m_fixture->foreground.depth(), 0);
    QCOMPARE(m_fixture->viewModel.selection(), std::nullopt);
    QVERIFY(closesOnAPressOutside());
    projects().promptToAdd();
    QVERIFY(m_fixture->chooser.isOpen());
}

OSTRELLE_TEST(ProjectsServiceTest)
#include "ProjectsServiceTest.moc"
