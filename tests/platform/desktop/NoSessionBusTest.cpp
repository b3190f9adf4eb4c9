#include "DefaultApplication.h"
#include "ShownDialog.h"
#include "platform/freedesktop/DesktopFileOpening.h"
#include "platform/freedesktop/PortalFileChooser.h"
#include "support/FakeClipboardPort.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFileDialog>
#include <QTest>

#include <optional>

namespace ostrelle {

/// Runs without a session bus.
class NoSessionBusTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void opensTheFolderInsteadOfRevealing()
    {
        QVERIFY(qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"));
        DefaultApplication application;
        QTemporaryDir folder;
        DesktopFileOpening opening;
        opening.reveal(folder.filePath(QStringLiteral("file")), {});
        QTRY_COMPARE(application.opened(), QStringList(folder.path()));
    }

    void choosesInTheToolkitsDialog()
    {
        ManualTaskScheduler scheduler;
        FakeClipboardPort clipboard(scheduler);
        PortalFileChooser chooser(scheduler, clipboard);
        std::optional<QStringList> answer;
        chooser.choose({FileChoice::Kind::Folders, QStringLiteral("Choose."), {}, {}, {}, {}}, this,
                       [&answer](const QStringList &paths) { answer = paths; });
        QTRY_VERIFY(shownDialog());
        shownDialog()->reject();
        QTRY_VERIFY(answer);
        QVERIFY(answer->isEmpty());
    }
};

} // namespace ostrelle

using ostrelle::NoSessionBusTest;
OSTRELLE_TEST(NoSessionBusTest)

#include "NoSessionBusTest.moc"
