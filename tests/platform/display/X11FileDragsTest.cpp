#include "DragDesktop.h"
#include "PortalStandIn.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// Far below what waiting for another program takes, and above what a loaded machine does to an idle loop.
constexpr auto kStandstillAllowed = 400ms;

const auto kUriList = QStringLiteral("text/uri-list");

/// The words of `line`; the last one is `value`.
QStringList options(const char *line, const QString &value = {})
{
    QStringList words = QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts);
    return value.isEmpty() ? words : words << value;
}

OtherProgram honestSource()
{
    return dragSource({QStringLiteral("--type"), kUriList, QStringLiteral("file:///tmp/honest\r\n")});
}

} // namespace

class X11FileDragsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void servesEverySource_data();
    void servesEverySource();
    void servesALateSourceAfterItsDrop();
    void servesASourceThatIsLaterWhileItsDragGoesOn();
    void doesNotWaitForASourceThatHangs();
    void endsADragWhoseSourceIsGone_data();
    void endsADragWhoseSourceIsGone();
    void takesOnlySoMuch_data();
    void takesOnlySoMuch();
    void refusesWhatHasNoFiles();
    void aToolkitsSourceUnderstandsARefusal();
    void tellsTheSourceWhenTheAnswerChanges();

private:
    PortalStandIn m_portal; // before a real one is started on the test's bus

    /// After whatever has happened, the next drag works.
    static void takesTheNextDrag(DragDesktop &desktop)
    {
        desktop.dropped.clear();
        OtherProgram honest = honestSource();
        desktop.pickUp(honest);
        desktop.moveOverPanel();
        desktop.letGo();
        QTRY_COMPARE(desktop.dropped, QList<QStringList>({{QStringLiteral("/tmp/honest")}}));
        QVERIFY(honest.says("finished 1"));
    }
};

void X11FileDragsTest::servesEverySource_data()
{
    const auto list = QStringLiteral("file:///tmp/two%20words\r\n"
                                     "https://example.org/page\r\n"
                                     "file://elsewhere/remote\r\n"
                                     "file:///tmp/not%FFutf8\r\n"
                                     "file:///tmp/a%0Ab\r\n"
                                     "no uri at all\r\n"
                                     "file:///tmp/gr%C3%BCn\r\n");
    const QString copied = QStringLiteral("copy\n") + QString(list).remove(u'\r').chopped(1);
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    const auto plain = [](const char *name, const QStringList &arguments) {
        QTest::newRow(name) << QStringLiteral("drag-source") << arguments;
    };
    plain("plain", options("--type text/uri-list", list));
    plain("version 3", options("--version 3 --type text/uri-list", list));
    plain("a list of types", options("--decoys --type text/uri-list", list));
    plain("refuses other times", options("--mode strict --type text/uri-list", list));
    plain("late", options("--late 300 --type text/uri-list", list));
    plain("copied files", options("--type x-special/gnome-copied-files", copied));
    plain("files in the second type only", options("--type text/uri-list https://example.org/ "
                                                   "--type x-special/gnome-copied-files",
                                                   copied));
    plain("a browser's URLs and titles",
          options("--type text/x-moz-url", QStringLiteral("file:///tmp/two%20words\nA title\nhttps://example.org/page\n"
                                                          "file:///tmp/title\nfile:///tmp/a%0Ab\n\n"
                                                          "file:///tmp/gr%C3%BCn\n")));
    plain("a portal's key", options("--type application/vnd.portal.filetransfer a-key"));
    const QStringList uris = options("source file:///tmp/two%20words https://example.org/page file:///tmp/a%0Ab "
                                     "file:///tmp/gr%C3%BCn");
    QTest::newRow("Qt") << QStringLiteral("toolkit-drags") << uris;
    QTest::newRow("GTK") << QStringLiteral("gtk") << uris;
}

void X11FileDragsTest::servesEverySource()
{
    QFETCH(const QString, program);
    QFETCH(const QStringList, arguments);
    const QStringList paths{QStringLiteral("/tmp/two words"), QStringLiteral("/tmp/a\nb"), QStringLiteral("/tmp/grün")};
    m_portal.files[QStringLiteral("a-key")] = paths;
    DragDesktop desktop;
    OtherProgram source = program == QStringLiteral("gtk") ? gtkDrags(arguments) : OtherProgram(program, arguments);
    desktop.pickUp(source);
    desktop.moveOverPanel();
    desktop.moveAround(QPoint(950, 40), "the list is read", [&] { return !desktop.known.isEmpty(); });
    QCOMPARE(desktop.known, QList<QStringList>{paths});
    desktop.letGo();
    QTRY_COMPARE(desktop.dropped, QList<QStringList>{paths});
    QCOMPARE(desktop.left, 0);
    const bool isPlain = program == QStringLiteral("drag-source");
    const bool isTold = isPlain && !arguments.contains(QStringLiteral("3")); // version 3 says only that it is over
    QVERIFY(source.says(isTold ? "finished 1" : isPlain ? "finished 0" : "ended copy"));
}

void X11FileDragsTest::servesALateSourceAfterItsDrop()
{
    DragDesktop desktop;
    OtherProgram source = dragSource(options("--late 350 --type text/uri-list file:///tmp/late"));
    desktop.pickUp(source);
    desktop.moveOverPanel();
    desktop.letGo();
    QVERIFY(source.says("dropped"));
    desktop.platform().fileDrags().setAccepted(false); // too late
    QVERIFY(desktop.known.isEmpty());
    QVERIFY(source.says("finished 1")); // not before the list has come
    QCOMPARE(desktop.dropped, QList<QStringList>({{QStringLiteral("/tmp/late")}}));
    QCOMPARE(desktop.known, desktop.dropped);
}

void X11FileDragsTest::servesASourceThatIsLaterWhileItsDragGoesOn()
{
    DragDesktop desktop;
    OtherProgram source = dragSource(options("--late 900 --type text/uri-list file:///tmp/later"));
    desktop.pickUp(source);
    desktop.moveOverPanel();
    QTRY_COMPARE(desktop.known, QList<QStringList>({{}}));
    QTRY_COMPARE(desktop.known, QList<QStringList>({{}, {QStringLiteral("/tmp/later")}}));
    desktop.letGo();
    QTRY_COMPARE(desktop.dropped, QList<QStringList>({{QStringLiteral("/tmp/later")}}));
}

void X11FileDragsTest::doesNotWaitForASourceThatHangs()
{
    DragDesktop desktop;
    OtherProgram source = dragSource(options("--mode hang --type text/uri-list file:///tmp/never"));
    desktop.pickUp(source);
    desktop.longestStandstill();
    desktop.moveOverPanel();
    QTRY_COMPARE(desktop.known, QList<QStringList>({{}}));
    desktop.letGo();
    QVERIFY(source.says("finished 1")); // it was told so before
    QCOMPARE(desktop.dropped, QList<QStringList>({{}}));
    QVERIFY2(desktop.longestStandstill() < kStandstillAllowed, "the panel waited for the source");
    takesTheNextDrag(desktop);
}

void X11FileDragsTest::endsADragWhoseSourceIsGone_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("ends in mid-drag") << QStringLiteral("die");
    QTest::newRow("lets go without a word") << QStringLiteral("mute");
    QTest::newRow("is killed") << QStringLiteral("hang");
}

void X11FileDragsTest::endsADragWhoseSourceIsGone()
{
    QFETCH(const QString, mode);
    DragDesktop desktop;
    OtherProgram source = dragSource(options("--type text/uri-list file:///tmp/file --mode", mode));
    desktop.pickUp(source);
    desktop.moveOverPanel();
    if (mode == QStringLiteral("hang")) {
        source.end();
    } else if (mode == QStringLiteral("mute")) {
        desktop.letGo();
    } else {
        desktop.moveAround(QPoint(950, 40), "the drag ends", [&] { return desktop.left > 0; });
    }
    QTRY_COMPARE(desktop.left, 1);
    QVERIFY(desktop.dropped.isEmpty());
    desktop.letGo();
    takesTheNextDrag(desktop);
}

void X11FileDragsTest::takesOnlySoMuch_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("count");
    QTest::newRow("100,000 files") << options("--count 100000") << 10'000;
    QTest::newRow("50 MB") << options("--count 2000000") << 10'000;
    QTest::newRow("long names") << options("--mode long") << 4096;
    QTest::newRow("garbage") << options("--mode garbage") << 0;
    QTest::newRow("nothing") << options("--mode refuse --type text/uri-list file:///tmp/file") << 0;
}

void X11FileDragsTest::takesOnlySoMuch()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, count);
    if (count > 0) {
        const auto line = QStringLiteral("A drag has more files than are taken: only its first %1 are.").arg(count);
        QTest::ignoreMessage(QtWarningMsg, line.toLatin1().constData());
    }
    DragDesktop desktop;
    OtherProgram source = dragSource(arguments);
    desktop.pickUp(source);
    desktop.longestStandstill();
    desktop.moveOverPanel();
    QTRY_COMPARE(desktop.known.count(), 1);
    QCOMPARE(desktop.known.first().count(), count);
    desktop.letGo();
    QTRY_COMPARE(desktop.dropped, desktop.known);
    QVERIFY(source.says("finished 1"));
    QVERIFY2(desktop.longestStandstill() < kStandstillAllowed, "the list was read or decoded on the main thread");
}

void X11FileDragsTest::refusesWhatHasNoFiles()
{
    DragDesktop desktop;
    OtherProgram source = dragSource(options("--type text/plain text"));
    desktop.pickUp(source);
    desktop.moveAround(QPoint(950, 40), "the source is refused", [&] { return source.hasSaid("status 0"); });
    desktop.letGo();
    QVERIFY(source.says("left"));
    QCOMPARE(desktop.entered, 0);
    takesTheNextDrag(desktop);
}

void X11FileDragsTest::aToolkitsSourceUnderstandsARefusal()
{
    DragDesktop desktop;
    desktop.isAccepting = false;
    OtherProgram source(QStringLiteral("toolkit-drags"), options("source file:///tmp/file"));
    desktop.pickUp(source);
    desktop.moveOverPanel();
    desktop.moveAround(QPoint(950, 40), "the list is read", [&] { return !desktop.known.isEmpty(); });
    desktop.letGo();
    QVERIFY(source.says("ended none"));
    QCOMPARE(desktop.dropped, QList<QStringList>());
}

void X11FileDragsTest::tellsTheSourceWhenTheAnswerChanges()
{
    DragDesktop desktop;
    desktop.isAccepting = false;
    OtherProgram source = honestSource();
    desktop.pickUp(source);
    desktop.moveOverPanel();
    QVERIFY(source.says("status 0"));
    desktop.platform().fileDrags().setAccepted(true); // the pointer rests
    QVERIFY(source.says("status 1"));
    desktop.letGo();
    QVERIFY(source.says("finished 1"));
    QCOMPARE(desktop.dropped.count(), 1);
}

} // namespace ostrelle

using ostrelle::X11FileDragsTest;
OSTRELLE_TEST(X11FileDragsTest)

#include "X11FileDragsTest.moc"
