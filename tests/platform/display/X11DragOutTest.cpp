#include "DragDesktop.h"
#include "PortalStandIn.h"
#include "platform/DragOut.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <optional>

namespace ostrelle {

using Outcome = DragOut::Outcome;

class X11DragOutTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void dropsIntoOtherPrograms_data();
    void dropsIntoOtherPrograms();
    void dropsOntoThePanelItself();
    void survivesTheEndOfItsSource();
    void doesNotBeginAfterTheRelease();
    void endsWhenTheReleaseIsMissed();

private:
    PortalStandIn m_portal; // before a real one is started on the test's bus
};

namespace {

constexpr QPoint kOnPanel{(1920 - 900) / 2 + 420, 20};

/// Keeps releases from whoever waits for them.
class ReleaseThief : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override { return event->type() == QEvent::MouseButtonRelease; }
};

void press(DragDesktop &desktop)
{
    desktop.user().movePointer(kOnPanel);
    desktop.user().button(true);
}

} // namespace

void X11DragOutTest::dropsIntoOtherPrograms_data()
{
    QTest::addColumn<bool>("isGtk");
    QTest::addColumn<bool>("hasPortal");
    QTest::newRow("GTK") << true << false;
    QTest::newRow("Qt") << false << false;
    QTest::newRow("sandboxed GTK") << true << true;
}

void X11DragOutTest::dropsIntoOtherPrograms()
{
    QFETCH(const bool, isGtk);
    QFETCH(const bool, hasPortal);
    m_portal.takesFiles = hasPortal;
    m_portal.files.clear();
    const QTemporaryDir folder;
    const QStringList paths{folder.filePath(QStringLiteral("two words")), folder.filePath(QStringLiteral("a\nü"))};
    for (const QString &path : paths) {
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    }
    DragDesktop desktop;
    OtherProgram target = isGtk ? gtkDrags({QStringLiteral("target")})
                                : OtherProgram(QStringLiteral("toolkit-drags"), {QStringLiteral("target")});
    QVERIFY(target.says("ready"));
    press(desktop);
    std::optional<Outcome> outcome;
    QPixmap picture(40, 40);
    picture.fill(Qt::red);
    desktop.platform().dragOut().start(desktop.panel(), {paths, picture, QPoint(20, 20)},
                                       [&](Outcome answer) { outcome = answer; });
    QVERIFY(!outcome);
    const auto key = QStringLiteral("key-0");
    bool isPictureSeen = false;
    desktop.perform({desktop.movingOverPanel(),
                     desktop.movingAround(DragDesktop::kTarget, [&] { return desktop.left > 0; }),
                     desktop.movingAround(DragDesktop::kTarget,
                                          [&] {
                                              const QRgb shown = desktop.user().pixel(DragDesktop::kTarget);
                                              return isPictureSeen = shown == QColor(Qt::red).rgb();
                                          }),
                     [&] { return !hasPortal || m_portal.files.value(key) == paths; }});
    QTRY_VERIFY(outcome);
    QCOMPARE(*outcome, Outcome::Dropped);
    QVERIFY(isPictureSeen);

    const QByteArray first = QUrl::fromLocalFile(paths[0]).toEncoded();
    const QByteArray second = QUrl::fromLocalFile(paths[1]).toEncoded();
    QByteArrayList expected{"type text/uri-list " + (first + "\r\n" + second + "\r\n").toPercentEncoding("/:"),
                            "type x-special/gnome-copied-files " +
                                ("copy\n" + first + '\n' + second).toPercentEncoding("/:")};
    if (hasPortal) {
        expected << "type application/vnd.portal.filetransfer " + key.toUtf8();
    }
    for (const QByteArray &line : expected) {
        QVERIFY2(target.says(line), line.constData());
    }
    QVERIFY(target.says("done"));
}

void X11DragOutTest::dropsOntoThePanelItself()
{
    DragDesktop desktop;
    press(desktop);
    std::optional<Outcome> outcome;
    const QStringList paths{QStringLiteral("/tmp/one"), QStringLiteral("/tmp/two")};
    desktop.platform().dragOut().start(desktop.panel(), {paths, {}, {}}, [&](Outcome answer) { outcome = answer; });
    desktop.perform({desktop.movingOverPanel()});
    QTRY_VERIFY(outcome);
    QCOMPARE(*outcome, Outcome::Dropped);
    QCOMPARE(desktop.known, QList<QStringList>{paths});
    QCOMPARE(desktop.dropped, QList<QStringList>{paths});
    QCOMPARE(desktop.left, 0);
}

void X11DragOutTest::survivesTheEndOfItsSource()
{
    DragDesktop desktop;
    auto tile = std::make_unique<QWidget>(&desktop.panel());
    press(desktop);
    bool isAnswered = false;
    desktop.platform().dragOut().start(*tile, {{QStringLiteral("/tmp/one")}, {}, {}},
                                       [&](Outcome) { isAnswered = true; });
    desktop.perform({desktop.movingOverPanel(), [&] {
                         tile.reset();
                         return true;
                     }});
    QTRY_COMPARE(desktop.dropped.count(), 1);

    // The next one works.
    press(desktop);
    std::optional<Outcome> outcome;
    desktop.platform().dragOut().start(desktop.panel(), {{QStringLiteral("/tmp/one")}, {}, {}},
                                       [&](Outcome answer) { outcome = answer; });
    desktop.perform({desktop.movingOverPanel()});
    QTRY_VERIFY(outcome);
    QCOMPARE(*outcome, Outcome::Dropped);
    QVERIFY(!isAnswered);
}

void X11DragOutTest::doesNotBeginAfterTheRelease()
{
    DragDesktop desktop;
    press(desktop);
    desktop.letGo();
    std::optional<Outcome> outcome;
    desktop.platform().dragOut().start(desktop.panel(), {{QStringLiteral("/tmp/one")}, {}, {}},
                                       [&](Outcome answer) { outcome = answer; });
    QTRY_VERIFY(outcome);
    QCOMPARE(*outcome, Outcome::Cancelled);
    QCOMPARE(desktop.entered, 0);
}

void X11DragOutTest::endsWhenTheReleaseIsMissed()
{
    DragDesktop desktop;
    press(desktop);
    std::optional<Outcome> outcome;
    desktop.platform().dragOut().start(desktop.panel(), {{QStringLiteral("/tmp/one")}, {}, {}},
                                       [&](Outcome answer) { outcome = answer; });
    ReleaseThief thief;
    desktop.perform({desktop.movingOverPanel(), [&] {
                         QCoreApplication::instance()->installEventFilter(&thief);
                         return true;
                     }});
    QTRY_VERIFY(outcome);
    QCOMPARE(*outcome, Outcome::Cancelled);
}

} // namespace ostrelle

using ostrelle::X11DragOutTest;
OSTRELLE_TEST(X11DragOutTest)

#include "X11DragOutTest.moc"
