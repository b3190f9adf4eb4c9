#include "OtherProgram.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/x11/KeeperProcess.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11ClipboardPort.h"
#include "platform/x11/X11Frontmost.h"
#include "platform/x11/XcbReply.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QTest>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto kKeeper = OSTRELLE_KEEPER;
constexpr auto kNoKeeper = "/nonexistent/keeper";

struct Program
{
    explicit Program(const char *keeper)
        : port(*connection, frontmost, scheduler, QString::fromLatin1(keeper))
    {
    }

    xcb_window_t owner()
    {
        const auto cookie = xcb_get_selection_owner(connection->xcb(), connection->atom("CLIPBOARD"));
        const XcbReply<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(connection->xcb(), cookie, nullptr));
        return reply->owner;
    }
    bool exists(xcb_window_t window)
    {
        const XcbReply<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(connection->xcb(), xcb_get_geometry(connection->xcb(), window), nullptr));
        return reply != nullptr;
    }

    std::unique_ptr<WatchConnection> connection = WatchConnection::open();
    SystemTaskScheduler scheduler;
    X11Frontmost frontmost{*connection, scheduler};
    X11ClipboardPort port;
};

OtherProgram paste(const char *type)
{
    return OtherProgram(QStringLiteral("xclip"),
                        {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o"),
                         QStringLiteral("-t"), QString::fromLatin1(type)});
}

} // namespace

class X11ClipboardHandOverTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void givesTheContentToAManager()
    {
        Program program(kNoKeeper);
        OtherProgram manager(QStringLiteral("clipboard-manager"), {QStringLiteral("works")});
        QVERIFY(manager.says("ready"));
        program.port.write(QStringLiteral("to be saved"));
        program.port.handOver();
        QVERIFY(manager.says("saved"));
    }

    void leavesTheContentOfOthersAlone()
    {
        Program program(kKeeper);
        const qint64 before = program.port.changeCount();
        program.port.write(QStringLiteral("mine"));
        auto other = copyElsewhere(QStringLiteral("theirs"));
        QTRY_COMPARE_WITH_TIMEOUT(program.port.changeCount(), before + 2, 20'000);
        const xcb_window_t owner = program.owner();
        program.port.handOver();
        QCOMPARE(program.owner(), owner);
        // Nor does a keeper take it that was started for what was there before.
        KeeperProcess late(QString::fromLatin1(kKeeper), owner + 1, {{{"UTF8_STRING"}, "mine"}});
        QTRY_VERIFY_WITH_TIMEOUT(late.isOver(), 20'000);
        QVERIFY(!late.hasTakenOver());
        QCOMPARE(program.owner(), owner);
    }

    void keepsTheContentWhenTheManagerHangs()
    {
        Program program(kKeeper);
        OtherProgram manager(QStringLiteral("clipboard-manager"), {QStringLiteral("hangs")});
        QVERIFY(manager.says("ready"));
        program.port.write(QStringLiteral("kept anyway"));
        const MonotonicTime begin = program.scheduler.now();
        program.port.handOver();
        QVERIFY(program.scheduler.now() - begin < 3s);
        QVERIFY(manager.says("asked"));
        // The toolkit, which would wait for the manager, has nothing to ask it for.
        QVERIFY(!QGuiApplication::clipboard()->ownsClipboard());
        for (const char *type : {"UTF8_STRING", "text/plain", "STRING"}) {
            QCOMPARE(paste(type).output(), "kept anyway");
        }
    }

    void keepsLargeContentUntilTheNextCopy()
    {
        Program program(kKeeper);
        QByteArray picture(5 * 1024 * 1024, '\0');
        for (qsizetype i = 0; i < picture.size(); ++i) {
            picture[i] = static_cast<char>(i % 251);
        }
        program.port.write(ClipboardImage{picture, ClipboardFormat::Png});
        program.port.handOver();
        const xcb_window_t keeper = program.owner();
        QVERIFY(!program.connection->isOwn(keeper));

        OtherProgram impatient = paste("image/png"); // goes away in the middle
        impatient.end();
        OtherProgram one = paste("image/png");
        OtherProgram two = paste("image/png");
        QVERIFY(one.output() == picture);
        QVERIFY(two.output() == picture);
        QVERIFY(paste("TARGETS").output().contains("image/png"));
        QVERIFY(paste("UTF8_STRING").output().isEmpty());
        QVERIFY(program.exists(keeper));

        auto next = copyElsewhere(QStringLiteral("next"));
        QVERIFY(next.says("ready"));
        QTRY_VERIFY_WITH_TIMEOUT(!program.exists(keeper), 20'000);
    }

    void survivesWithoutAnybodyToTakeIt()
    {
        Program program(kNoKeeper);
        program.port.write(QStringLiteral("lost"));
        program.port.handOver();
        QVERIFY(QGuiApplication::clipboard()->ownsClipboard());
        program.port.write(std::monostate());
        program.port.handOver();
    }
};

} // namespace ostrelle

using ostrelle::X11ClipboardHandOverTest;
OSTRELLE_TEST(X11ClipboardHandOverTest)

#include "X11ClipboardHandOverTest.moc"
