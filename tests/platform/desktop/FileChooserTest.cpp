#include "PortalStandIn.h"
#include "ShownDialog.h"
#include "platform/freedesktop/PortalFileChooser.h"
#include "platform/freedesktop/PortalFileFilter.h"
#include "support/FakeClipboardPort.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace ostrelle {

using namespace std::chrono_literals;

class FileChooserTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_chooser.reset();
        m_portal.reset(); // before the next takes its place on the bus
        m_portal = std::make_unique<PortalStandIn>();
        m_scheduler = std::make_unique<ManualTaskScheduler>();
        m_chooser = std::make_unique<PortalFileChooser>(*m_scheduler, m_clipboard);
        m_answer.reset();
    }

    void answersTheChosenFoldersByTheirRealNames()
    {
        m_portal->appear();
        choose(m_folders);
        QVERIFY(!m_portal->opened); // nobody waited
        QTRY_COMPARE(m_portal->opened, 1);
        QCOMPARE(m_portal->title, m_folders.message);
        QCOMPARE(m_portal->options.value(QStringLiteral("accept_label")).toString(), m_folders.acceptLabel);
        QVERIFY(m_portal->options.value(QStringLiteral("directory")).toBool());
        QVERIFY(m_portal->options.value(QStringLiteral("multiple")).toBool());
        QVERIFY(!m_portal->options.value(QStringLiteral("modal"), true).toBool());
        m_portal->respond(0, {QStringLiteral("file:///tmp/100%25%20%C3%BC"), QStringLiteral("sftp://host/tmp"),
                              QStringLiteral("file:///tmp/%23%0A"), QStringLiteral("%")});
        QTRY_VERIFY(m_answer);
        QCOMPARE(*m_answer, QStringList({QString::fromUtf8("/tmp/100% ü"), QStringLiteral("/tmp/#\n")}));
    }

    void asksForOneFileOfTheKinds()
    {
        m_portal->appear();
        m_portal->version = 1;
        choose(m_image);
        QTRY_COMPARE(m_portal->opened, 1);
        QVERIFY(!m_portal->options.contains(QStringLiteral("directory")));
        QVERIFY(!m_portal->options.value(QStringLiteral("multiple")).toBool());
        const auto argument = m_portal->options.value(QStringLiteral("filters")).value<QDBusArgument>();
        QCOMPARE(argument.currentSignature(), QStringLiteral("a(sa(us))"));
        const auto filters = qdbus_cast<QList<PortalFileFilter>>(argument);
        QCOMPARE(filters.size(), 1);
        QCOMPARE(filters.first().name, m_image.kindName);
        QStringList types;
        for (const PortalFileFilter::Rule &rule : filters.first().rules) {
            QCOMPARE(rule.kind, 1U);
            types << rule.value;
        }
        QVERIFY(types.contains(QStringLiteral("image/png")) && types.contains(QStringLiteral("image/svg+xml")) &&
                types.contains(QStringLiteral("application/pdf")));
        m_portal->respond(0, {QStringLiteral("file:///tmp/a.png")});
        QTRY_VERIFY(m_answer);
        QCOMPARE(*m_answer, QStringList(QStringLiteral("/tmp/a.png")));
    }

    void answersNothingWhenNothingWasChosen_data()
    {
        using Act = std::function<void(PortalStandIn &)>;
        QTest::addColumn<Act>("act");
        QTest::newRow("cancelled") << Act([](PortalStandIn &portal) { portal.respond(1); });
        QTest::newRow("window closed") << Act([](PortalStandIn &portal) { portal.respond(2); });
        QTest::newRow("garbage") << Act([](PortalStandIn &portal) { portal.respondWithGarbage(); });
        QTest::newRow("portal died") << Act([](PortalStandIn &portal) { portal.die(); });
    }

    void answersNothingWhenNothingWasChosen()
    {
        QFETCH(const std::function<void(PortalStandIn &)>, act);
        m_portal->appear();
        choose(m_folders);
        QTRY_COMPARE(m_portal->opened, 1);
        m_scheduler->advance(1s);
        act(*m_portal);
        QTRY_VERIFY(m_answer);
        QVERIFY(m_answer->isEmpty());
        QVERIFY(!shownDialog());
    }

    void asksByTheToolkitWhereThePortalCannot_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<uint>("version");
        QTest::addColumn<PortalStandIn::Manner>("manner");
        QTest::newRow("no portal") << false << 3U << PortalStandIn::Manner::Works;
        QTest::newRow("knows no folders") << true << 2U << PortalStandIn::Manner::Works;
        QTest::newRow("refuses") << true << 3U << PortalStandIn::Manner::RefusesToOpen;
        QTest::newRow("has no display") << true << 3U << PortalStandIn::Manner::ShowsNothing;
    }

    void asksByTheToolkitWhereThePortalCannot()
    {
        QFETCH(const bool, isThere);
        QFETCH(const uint, version);
        QFETCH(const PortalStandIn::Manner, manner);
        m_portal->version = version;
        m_portal->manner = manner;
        if (isThere) {
            m_portal->appear();
        }
        choose(m_folders);
        QTRY_VERIFY(shownDialog());
        shownDialog()->close();
        QTRY_VERIFY(m_answer);
        QVERIFY(m_answer->isEmpty());
        QTRY_VERIFY(!shownDialog());
    }

    void letsSeveralFoldersBeChosenInTheToolkitsDialog()
    {
        QTemporaryDir folder;
        for (const char *name : {"100% ü", "b"}) {
            QDir(folder.path()).mkdir(QString::fromUtf8(name));
        }
        QVERIFY(QFile(folder.filePath(QStringLiteral("file"))).open(QIODevice::WriteOnly));
        choose(m_folders);
        QTRY_VERIFY(shownDialog());
        QFileDialog &dialog = *shownDialog();
        QVERIFY(!dialog.isModal());
        QCOMPARE(dialog.windowTitle(), m_folders.message);
        QCOMPARE(dialog.labelText(QFileDialog::Accept), m_folders.acceptLabel);
        dialog.setDirectory(folder.path());
        QVERIFY(confirmAll(dialog, 2));
        QTRY_VERIFY(m_answer);
        m_answer->sort();
        QCOMPARE(*m_answer,
                 QStringList({folder.filePath(QString::fromUtf8("100% ü")), folder.filePath(QStringLiteral("b"))}));
        QVERIFY(!shownDialog());
    }

    void listsOnlyTheKindsInTheToolkitsDialog()
    {
        QTemporaryDir folder;
        for (const char *name : {"a.PNG", "b.txt"}) {
            QVERIFY(QFile(folder.filePath(QString::fromUtf8(name))).open(QIODevice::WriteOnly));
        }
        choose(m_image);
        QTRY_VERIFY(shownDialog());
        shownDialog()->setDirectory(folder.path());
        QVERIFY(confirmAll(*shownDialog(), 1));
        QTRY_VERIFY(m_answer);
        QCOMPARE(*m_answer, QStringList(folder.filePath(QStringLiteral("a.PNG"))));
    }

    void aNewerChoiceTakesThePlaceOfAnOpenOne()
    {
        m_portal->appear();
        std::optional<QStringList> first;
        m_chooser->choose(m_image, this, [&first](const QStringList &paths) { first = paths; });
        QTRY_COMPARE(m_portal->opened, 1);
        m_scheduler->advance(1s);
        choose(m_folders);
        QTRY_COMPARE(m_portal->opened, 2);
        QCOMPARE(m_portal->closed, 1);
        QVERIFY(!first);
        m_portal->respond(0, {QStringLiteral("file:///tmp")});
        QTRY_VERIFY(m_answer);
        QVERIFY(first && first->isEmpty());
        QCOMPARE(*m_answer, QStringList(QStringLiteral("/tmp")));
    }

    void comesToTheFrontWhenToldTo()
    {
        m_chooser->raise(); // there is none
        m_portal->appear();
        choose(m_image);
        m_chooser->raise(); // it is still coming
        QTRY_COMPARE(m_portal->opened, 1);
        QCOMPARE(m_portal->closed, 0);
        m_scheduler->advance(2s);
        m_chooser->raise();
        QTRY_COMPARE(m_portal->opened, 2);
        QCOMPARE(m_portal->closed, 1);
        QVERIFY(!m_answer);
        m_portal->respond(0, {QStringLiteral("file:///tmp/a.png")});
        QTRY_VERIFY(m_answer);
        QCOMPARE(*m_answer, QStringList(QStringLiteral("/tmp/a.png")));

        m_portal->version = 0;
        m_answer.reset();
        choose(m_image);
        QTRY_VERIFY(shownDialog());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        m_chooser->raise();
        QTRY_VERIFY(shownDialog()->isActiveWindow());
        QVERIFY(!m_answer);
        shownDialog()->close();
        QTRY_VERIFY(m_answer);
    }

    void answersNobodyWhoHasGone()
    {
        m_portal->appear();
        auto gone = std::make_unique<QObject>();
        m_chooser->choose(m_image, gone.get(), [](const QStringList &) { QFAIL("answered"); });
        QTRY_COMPARE(m_portal->opened, 1);
        gone.reset();
        choose(m_folders);
        QTRY_COMPARE(m_portal->opened, 2);
        m_portal->respond(1);
        QTRY_VERIFY(m_answer);
    }

private:
    void choose(const FileChoice &choice)
    {
        m_chooser->choose(choice, this, [this](const QStringList &paths) { m_answer = paths; });
    }

    const FileChoice m_folders{
        FileChoice::Kind::Folders, QStringLiteral("Choose the folders."), QStringLiteral("Add Project"), {}, {}, {}};
    const FileChoice m_image{FileChoice::Kind::File,
                             QStringLiteral("Choose an image."),
                             {},
                             {QStringLiteral("image/*"), QStringLiteral("application/pdf")},
                             {},
                             QStringLiteral("Images")};
    std::unique_ptr<PortalStandIn> m_portal;
    std::unique_ptr<ManualTaskScheduler> m_scheduler;
    ManualTaskScheduler m_clipboardClock;
    FakeClipboardPort m_clipboard{m_clipboardClock};
    std::unique_ptr<PortalFileChooser> m_chooser;
    std::optional<QStringList> m_answer;
};

} // namespace ostrelle

using ostrelle::FileChooserTest;
OSTRELLE_TEST(FileChooserTest)

#include "FileChooserTest.moc"
