#include "OtherProgram.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11ClipboardPort.h"
#include "platform/x11/X11Frontmost.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

using namespace std::chrono_literals;
using Outcome = ClipboardContent::Outcome;

namespace {

/// The time of the port stands still; that of the heartbeat does not.
struct Clipboard
{
    template <typename Answer>
    struct Pending
    {
        std::optional<Answer> answer;
        bool isThere() const { return answer.has_value(); }
        bool arrives() const
        {
            return QTest::qWaitFor([this] { return isThere(); }, 20'000);
        }
    };

    void snapshot(Pending<std::optional<ClipboardSnapshot>> &into)
    {
        port.snapshot(&context, [&into](const auto &answer) { into.answer = answer; });
    }
    std::optional<ClipboardSnapshot> snapshot()
    {
        Pending<std::optional<ClipboardSnapshot>> pending;
        snapshot(pending);
        return pending.arrives() ? *pending.answer : std::nullopt;
    }
    void read(ClipboardFormat format, Pending<ClipboardContent> &into)
    {
        port.read(port.changeCount(), format, &context, [&into](const auto &answer) { into.answer = answer; });
    }
    ClipboardContent read(ClipboardFormat format)
    {
        Pending<ClipboardContent> pending;
        read(format, pending);
        return pending.arrives() ? *pending.answer : ClipboardContent();
    }
    /// Waits for the copy of a program that is about to make one.
    bool changesTo(qint64 count)
    {
        return QTest::qWaitFor([&] { return port.changeCount() >= count; }, 20'000);
    }
    /// The event loop goes round so often; it would not while somebody blocks it.
    bool beats(int times)
    {
        int count = 0;
        const Task heart = realTime.every(5ms, &context, [&count] { ++count; });
        return QTest::qWaitFor([&] { return count >= times; }, 20'000);
    }

    std::unique_ptr<WatchConnection> connection = WatchConnection::open();
    ManualTaskScheduler time;
    SystemTaskScheduler realTime;
    X11Frontmost frontmost{*connection, time};
    X11ClipboardPort port{*connection, frontmost, time, QString()};
    QObject context;
};

OtherProgram owner(const QStringList &arguments)
{
    return OtherProgram(QStringLiteral("selection-owner"), arguments);
}

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(u' ');
}

} // namespace

class X11ClipboardTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void readsFilesPicturesAndText();
    void readsLargePicturesInIncrements();
    void tellsConcealedContent();
    void isUnharmedByHostileOwners_data();
    void isUnharmedByHostileOwners();
    void endsAnEndlessDripAfterTheTotalDeadline();
    void answersGoneWhenSomethingElseIsCopied();
    void countsEachOfAThousandCopies();
    void hasNothingWhenTheOwnerIsGone();
    void countsItsOwnWritesOnceAndServesThem();
    void readsAProgramOfAnotherToolkit();
};

void X11ClipboardTest::readsFilesPicturesAndText()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto other = owner({QStringLiteral("serve"), QStringLiteral("--type"), QStringLiteral("text/uri-list"),
                        QStringLiteral("https://example.org/\r\n"), QStringLiteral("--type"),
                        QStringLiteral("x-special/gnome-copied-files"), QStringLiteral("copy\nfile:///tmp/a%20b"),
                        QStringLiteral("--type"), QStringLiteral("image/png"), QStringLiteral("png bytes"),
                        QStringLiteral("--text"), QStringLiteral(" grüße ")});
    QVERIFY(other.says("ready"));
    QVERIFY(clipboard.changesTo(before + 1));
    const auto snapshot = clipboard.snapshot();
    QVERIFY(snapshot);
    QCOMPARE(snapshot->changeCount, before + 1);
    QCOMPARE(snapshot->formats,
             QList<ClipboardFormat>({ClipboardFormat::Files, ClipboardFormat::Png, ClipboardFormat::Text}));
    QVERIFY(snapshot->types.contains(QStringLiteral("text/uri-list")));
    // The list has no file in it, so the next best type is asked.
    QCOMPARE(clipboard.read(ClipboardFormat::Files).paths, QStringList(QStringLiteral("/tmp/a b")));
    QCOMPARE(clipboard.read(ClipboardFormat::Png).bytes, "png bytes");
    QCOMPARE(clipboard.read(ClipboardFormat::Text).text, QStringLiteral(" grüße "));
    QCOMPARE(clipboard.read(ClipboardFormat::Tiff).outcome, Outcome::Absent);

    auto links = owner({QStringLiteral("serve"), QStringLiteral("--type"), QStringLiteral("text/uri-list"),
                        QStringLiteral("https://example.org/")});
    QVERIFY(links.says("ready"));
    QVERIFY(clipboard.changesTo(before + 2));
    QCOMPARE(clipboard.read(ClipboardFormat::Files).outcome, Outcome::Absent); // and nobody asked for a snapshot
}

void X11ClipboardTest::readsLargePicturesInIncrements()
{
    QByteArray pattern(10 * 1024 * 1024, '\0');
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        pattern[i] = static_cast<char>(i % 251);
    }
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto other = owner(words("serve --bytes image/png 10485760 --bytes image/tiff 16777217"));
    QVERIFY(other.says("ready"));
    QVERIFY(clipboard.changesTo(before + 1));
    QVERIFY(clipboard.read(ClipboardFormat::Png).bytes == pattern);
    const ClipboardContent tooLarge = clipboard.read(ClipboardFormat::Tiff);
    QCOMPARE(tooLarge.outcome, Outcome::TooLarge);
    QVERIFY(tooLarge.bytes.isEmpty());

    // A program whose increments are as large as the server takes them.
    OtherProgram xclip(QStringLiteral("xclip"), words("-selection clipboard -t image/png -quiet"), pattern);
    QVERIFY(clipboard.changesTo(before + 2));
    QVERIFY(clipboard.read(ClipboardFormat::Png).bytes == pattern);
}

void X11ClipboardTest::tellsConcealedContent()
{
    const auto concealed = QStringLiteral("org.nspasteboard.ConcealedType");
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto hinted = owner(words("serve --text word --type x-kde-passwordManagerHint secret"));
    QVERIFY(clipboard.changesTo(before + 1));
    QVERIFY(clipboard.snapshot()->types.contains(concealed));
    auto harmless = owner(words("serve --text word --type x-kde-passwordManagerHint public"));
    QVERIFY(clipboard.changesTo(before + 2));
    QVERIFY(!clipboard.snapshot()->types.contains(concealed));
    auto marked = owner(words("serve --text word --marker com.agilebits.onepassword"));
    QVERIFY(clipboard.changesTo(before + 3));
    QVERIFY(clipboard.snapshot()->types.contains(QStringLiteral("com.agilebits.onepassword")));
}

void X11ClipboardTest::isUnharmedByHostileOwners_data()
{
    QTest::addColumn<bool>("hasTypes");
    QTest::addColumn<bool>("hangs");
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("refuse") << false << false << Outcome::TimedOut;
    QTest::newRow("garbage-targets") << false << false << Outcome::Absent;
    QTest::newRow("hang-targets") << false << true << Outcome::TimedOut;
    QTest::newRow("hang-incr") << true << true << Outcome::TimedOut;
    QTest::newRow("die-incr") << true << false << Outcome::Gone;
    QTest::newRow("announce-4g") << true << false << Outcome::TooLarge;
    QTest::newRow("huge") << true << false << Outcome::TooLarge;
}

void X11ClipboardTest::isUnharmedByHostileOwners()
{
    QFETCH(bool, hasTypes);
    QFETCH(bool, hangs);
    QFETCH(Outcome, outcome);
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto hostile = owner({QString::fromLatin1(QTest::currentDataTag())});
    QVERIFY(clipboard.changesTo(before + 1));
    if (hasTypes) {
        QVERIFY(clipboard.snapshot());
    }
    Clipboard::Pending<ClipboardContent> pending;
    clipboard.read(ClipboardFormat::Png, pending);
    QVERIFY(hostile.says(hasTypes ? "asked image/png" : "asked TARGETS"));
    if (hangs) {
        QVERIFY(clipboard.beats(20));
        QVERIFY(!pending.isThere());
        for (int i = 0; i < 5; ++i) { // two seconds since the last sign of life, looked at twice a second
            clipboard.time.advance(500ms);
            QVERIFY(clipboard.beats(2));
        }
    }
    QVERIFY(pending.arrives());
    QCOMPARE(pending.answer->outcome, outcome);
    QVERIFY(pending.answer->bytes.isEmpty());

    const qint64 count = clipboard.port.changeCount();
    auto honest = copyElsewhere(QStringLiteral("next"));
    QVERIFY(clipboard.changesTo(count + 1));
    QVERIFY(clipboard.snapshot());
    QCOMPARE(clipboard.read(ClipboardFormat::Text).text, QStringLiteral("next"));
}

void X11ClipboardTest::endsAnEndlessDripAfterTheTotalDeadline()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto drip = owner({QStringLiteral("drip")});
    QVERIFY(clipboard.changesTo(before + 1));
    QVERIFY(clipboard.snapshot());
    Clipboard::Pending<ClipboardContent> pending;
    clipboard.read(ClipboardFormat::Png, pending);
    QVERIFY(drip.says("asked image/png"));
    for (auto waited = 0ms; waited < 9500ms; waited += 500ms) {
        QVERIFY(clipboard.beats(10)); // something drips meanwhile
        clipboard.time.advance(500ms);
        QVERIFY(!pending.isThere());
    }
    clipboard.time.advance(1s);
    QVERIFY(pending.arrives());
    QCOMPARE(pending.answer->outcome, Outcome::TimedOut);
}

void X11ClipboardTest::answersGoneWhenSomethingElseIsCopied()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto hanging = owner({QStringLiteral("hang-targets")});
    QVERIFY(clipboard.changesTo(before + 1));
    Clipboard::Pending<std::optional<ClipboardSnapshot>> snapshot;
    Clipboard::Pending<ClipboardContent> content;
    clipboard.snapshot(snapshot);
    clipboard.read(ClipboardFormat::Text, content);
    auto honest = copyElsewhere(QStringLiteral("newer"));
    QVERIFY(snapshot.arrives());
    QVERIFY(!*snapshot.answer);
    QVERIFY(content.arrives());
    QCOMPARE(content.answer->outcome, Outcome::Gone);
    // Who asks for what is not there any more is told so, too.
    Clipboard::Pending<ClipboardContent> late;
    clipboard.port.read(before + 1, ClipboardFormat::Text, &clipboard.context,
                        [&late](const auto &answer) { late.answer = answer; });
    QVERIFY(late.arrives());
    QCOMPARE(late.answer->outcome, Outcome::Gone);
}

void X11ClipboardTest::countsEachOfAThousandCopies()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto burst = owner(words("burst --count 1000"));
    QVERIFY(burst.succeeds());
    QVERIFY(clipboard.changesTo(before + 1000));
    auto honest = copyElsewhere(QStringLiteral("after all"));
    QVERIFY(clipboard.changesTo(before + 1001));
    QCOMPARE(clipboard.read(ClipboardFormat::Text).text, QStringLiteral("after all"));
}

void X11ClipboardTest::hasNothingWhenTheOwnerIsGone()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    auto other = copyElsewhere(QStringLiteral("short-lived"));
    QVERIFY(other.says("ready"));
    QVERIFY(clipboard.changesTo(before + 1));
    other.end();
    QTRY_VERIFY(!clipboard.snapshot());
    QCOMPARE(clipboard.read(ClipboardFormat::Text).outcome, Outcome::Gone);
    QCOMPARE(clipboard.port.changeCount(), before + 1);
}

void X11ClipboardTest::countsItsOwnWritesOnceAndServesThem()
{
    Clipboard clipboard;
    const auto paste = [](const char *type) {
        return OtherProgram(QStringLiteral("xclip"), words("-selection clipboard -o -t") << QString::fromLatin1(type))
            .output();
    };
    const QSignalSpy changed(&clipboard.port, &ClipboardPort::changed);
    qint64 count = clipboard.port.changeCount();

    QCOMPARE(clipboard.port.write(QStringLiteral("grüße")), ++count);
    for (const char *type : {"UTF8_STRING", "text/plain", "text/plain;charset=utf-8"}) {
        QCOMPARE(QString::fromUtf8(paste(type)), QStringLiteral("grüße"));
    }
    QCOMPARE(clipboard.port.write(ClipboardFiles{{QStringLiteral("/tmp/a b"), QStringLiteral("/ü")}}), ++count);
    QCOMPARE(paste("text/uri-list"), "file:///tmp/a%20b\r\nfile:///%C3%BC\r\n");
    QCOMPARE(paste("x-special/gnome-copied-files"), "copy\nfile:///tmp/a%20b\nfile:///%C3%BC");
    const QByteArray picture(3 * 1024 * 1024, 'p');
    QCOMPARE(clipboard.port.write(ClipboardImage{picture, ClipboardFormat::Tiff}), ++count);
    QVERIFY(paste("image/tiff") == picture);
    QVERIFY(clipboard.read(ClipboardFormat::Tiff).bytes == picture);
    QCOMPARE(clipboard.port.write(std::monostate()), ++count);
    QVERIFY(!clipboard.snapshot());
    QCOMPARE(clipboard.port.changeCount(), count);
    QCOMPARE(changed.count(), 4);

    // A copy in one of the program's own text fields is a copy like any other.
    QGuiApplication::clipboard()->setText(QStringLiteral("from a field"));
    QVERIFY(clipboard.changesTo(count + 1));
    QCOMPARE(clipboard.read(ClipboardFormat::Text).text, QStringLiteral("from a field"));
    QCOMPARE(clipboard.port.changeCount(), count + 1);
}

void X11ClipboardTest::readsAProgramOfAnotherToolkit()
{
    Clipboard clipboard;
    const qint64 before = clipboard.port.changeCount();
    OtherProgram gtk(QStringLiteral("/usr/bin/python3"),
                     {QStringLiteral("-c"), QStringLiteral("import gi\n"
                                                           "gi.require_version('Gtk', '3.0')\n"
                                                           "from gi.repository import Gtk, Gdk\n"
                                                           "c = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)\n"
                                                           "c.set_text('grün ' * 200000, -1)\n"
                                                           "Gtk.main()\n")});
    QVERIFY(clipboard.changesTo(before + 1));
    QCOMPARE(clipboard.snapshot()->formats, QList<ClipboardFormat>({ClipboardFormat::Text}));
    QCOMPARE(clipboard.read(ClipboardFormat::Text).text, QStringLiteral("grün ").repeated(200000));
}

} // namespace ostrelle

using ostrelle::X11ClipboardTest;
OSTRELLE_TEST(X11ClipboardTest)

#include "X11ClipboardTest.moc"
