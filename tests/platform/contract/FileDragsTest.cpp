#include "platform/FileDrags.h"
#include "ContractDesktop.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/DragOut.h"
#include "platform/PanelHost.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

namespace ostrelle {

using namespace std::chrono_literals;

/// The contracts of drags of files into the panel and out of it.
class FileDragsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_desktop = ContractDesktop::make();
        m_panel = std::make_unique<QWidget>();
        m_desktop->panelHost().attach(*m_panel);
        m_desktop->panelHost().place(m_desktop->screens().primary()->name, QSizeF(300, 100));
        m_desktop->panelHost().setInteractiveRect(QRectF(400, 0, 100, 60));
        QPainterPath outline;
        outline.addRect(QRectF(300, 0, 300, 100));
        m_desktop->panelHost().setOutline(outline);
    }
    void cleanup()
    {
        m_panel.reset();
        m_desktop.reset();
    }

    void tellsOfADragFromEnteringToTheDrop()
    {
        FileDrags &drags = m_desktop->fileDrags();
        QStringList order;
        QPointF position;
        QStringList known;
        QStringList dropped;
        connect(&drags, &FileDrags::entered, this, [&](const QPointF &at) {
            order << QStringLiteral("entered");
            position = at;
            drags.setAccepted(true);
        });
        connect(&drags, &FileDrags::moved, this, [&](const QPointF &at) { position = at; });
        connect(&drags, &FileDrags::filesKnown, this, [&](const QStringList &paths) {
            order << QStringLiteral("known");
            known = paths;
        });
        connect(&drags, &FileDrags::left, this, [&] { order << QStringLiteral("left"); });
        connect(&drags, &FileDrags::dropped, this, [&](const QPointF &at, const QStringList &paths) {
            order << QStringLiteral("dropped");
            position = at;
            dropped = paths;
        });

        const QStringList paths{QStringLiteral("/tmp/two words"), QStringLiteral("/tmp/a\nb"), QStringLiteral("/ü")};
        m_desktop->dragFiles(paths);
        m_desktop->movePointer(QPointF(380, 90)); // over the window, beside what can be touched
        m_desktop->movePointer(QPointF(420, 20));
        QTRY_COMPARE(known, paths);
        QVERIFY(isNear(position, QPointF(420, 20)));
        m_desktop->movePointer(QPointF(450, 32));
        QTRY_VERIFY(isNear(position, QPointF(450, 32)));
        m_desktop->releaseButton();
        QTRY_COMPARE(dropped, paths);
        QVERIFY(isNear(position, QPointF(450, 32)));
        QCOMPARE(order, QStringList({QStringLiteral("entered"), QStringLiteral("known"), QStringLiteral("dropped")}));
    }

    void beginsEachDragRefused()
    {
        FileDrags &drags = m_desktop->fileDrags();
        const QSignalSpy entered(&drags, &FileDrags::entered);
        const QSignalSpy left(&drags, &FileDrags::left);
        const QSignalSpy dropped(&drags, &FileDrags::dropped);
        m_desktop->dragFiles({QStringLiteral("/tmp/file")});
        m_desktop->movePointer(QPointF(420, 20));
        QTRY_COMPARE(entered.count(), 1);
        drags.setAccepted(true);
        m_desktop->movePointer(QPointF(380, 90));
        QTRY_COMPARE(left.count(), 1);
        m_desktop->movePointer(QPointF(420, 20));
        QTRY_COMPARE(entered.count(), 2); // the same drag, but another visit
        m_desktop->releaseButton();
        QTRY_COMPARE(left.count(), 2);
        QCOMPARE(dropped.count(), 0);
    }

    void dragsOutUntilTheButtonIsReleased()
    {
        m_desktop->movePointer(QPointF(420, 20));
        m_desktop->pressButton();
        QStringList ends;
        const auto noting = [&ends](const QString &which) {
            return [&ends, which](DragOut::Outcome outcome) {
                ends << which + (outcome == DragOut::Outcome::Cancelled ? QStringLiteral(" cancelled")
                                                                        : QStringLiteral(" dropped"));
            };
        };
        m_desktop->dragOut().start(*m_panel, {{QStringLiteral("/tmp/file")}, {}, {}}, noting(QStringLiteral("first")));
        m_desktop->dragOut().start(*m_panel, {{QStringLiteral("/tmp/other")}, {}, {}},
                                   noting(QStringLiteral("second")));
        QCOMPARE(ends, QStringList()); // never from within the call
        // A drag may run an event loop of its own, inside of the wait below: nothing after that wait could end it.
        SystemTaskScheduler time;
        const Task release = time.after(300ms, this, [this] { m_desktop->releaseButton(); }); // where nobody takes it
        QTRY_COMPARE(ends, QStringList({QStringLiteral("second cancelled"), QStringLiteral("first cancelled")}));
    }

private:
    static bool isNear(const QPointF &one, const QPointF &other)
    {
        return (one - other).manhattanLength() <= 1.5; // a device pixel
    }

    std::unique_ptr<ContractDesktop> m_desktop;
    std::unique_ptr<QWidget> m_panel;
};

} // namespace ostrelle

using ostrelle::FileDragsTest;
OSTRELLE_TEST(FileDragsTest)

#include "FileDragsTest.moc"
