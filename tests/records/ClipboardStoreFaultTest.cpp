#include "ClipFixtures.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <ctime>
#include <functional>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ostrelle;

namespace {

const QRegularExpression kNotSaved(QStringLiteral("The clipboard history is not saved: .*"));
const QRegularExpression kUnreadable(QStringLiteral("The clipboard history cannot be read.*"));
const QRegularExpression kDamaged(QStringLiteral("The journal of the clipboard history is damaged.*"));

/// Runs `work` in a process of its own and returns its process id.
pid_t inOwnProcess(const std::function<int()> &work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    return child;
}

/// The kernel kills this process with SIGKILL at that time, wherever it is then.
void dieAfter(int microseconds)
{
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer = {};
    ::timer_create(CLOCK_MONOTONIC, &event, &timer);
    const itimerspec once = {{0, 0}, {0, 1000L * microseconds + 1}};
    ::timer_settime(timer, 0, &once, nullptr);
}

int exitStatus(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

/// What becomes of the history when something goes wrong.
class ClipboardStoreFaultTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void holdsWhatWasAcknowledgedWhenKilled_data();
    void holdsWhatWasAcknowledgedWhenKilled();
    void ignoresAJournalThatWasFolded();
    void takesATornJournalUpToTheTear();
    void aForeignJournalCostsNothing_data();
    void aForeignJournalCostsNothing();
    void keepsUndecodableFilesAside_data();
    void keepsUndecodableFilesAside();
    void savesAgainWhenThereIsRoom_data();
    void savesAgainWhenThereIsRoom();
    void writesAnewWhenTheFilesAreTakenAway();

private:
    QString path(const char *name) const { return m_folder->path() + u'/' + QLatin1String(name); }
    /// A large array with one text in the journal beside it, as after a crash.
    QList<ClipItem> leaveJournal();

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ClipboardStoreFaultTest::init()
{
    TestBase::init();
    m_folder = std::make_unique<QTemporaryDir>();
}

QList<ClipItem> ClipboardStoreFaultTest::leaveJournal()
{
    const QByteArray image = noise(ClipboardStore::kWholeRewriteLimit / 5 * 4, 5);
    const QList<ClipItem> items{textClip(QStringLiteral("second")), textClip(QStringLiteral("first")),
                                imageClip(image)};
    const pid_t child = inOwnProcess([&] {
        ClipboardStore store(m_folder->path());
        store.load();
        store.insertAtTop(items[2], image);
        store.flush();
        store.insertAtTop(items[1], {});
        store.insertAtTop(items[0], {});
        const int status = store.flush() ? 0 : 1;
        ::_exit(status); // before the store can close
        return status;
    });
    return exitStatus(child) == 0 ? items : QList<ClipItem>();
}

void ClipboardStoreFaultTest::holdsWhatWasAcknowledgedWhenKilled_data()
{
    QTest::addColumn<bool>("isLarge");
    QTest::newRow("whole rewrites") << false;
    QTest::newRow("journal and folding") << true;
}

void ClipboardStoreFaultTest::holdsWhatWasAcknowledgedWhenKilled()
{
    QFETCH(bool, isLarge);
    QRandomGenerator random(isLarge ? 3 : 4);
    if (isLarge)
        QVERIFY(!leaveJournal().isEmpty());
    for (int round = 0; round < 12; ++round) {
        int acknowledged[2] = {-1, -1};
        QCOMPARE(::pipe(acknowledged), 0);
        const int killedAfterMicroseconds = random.bounded(60'000);
        const pid_t child = inOwnProcess([&] {
            ClipboardStore store(m_folder->path());
            store.load();
            for (int number = 0;; ++number) {
                const QString text = QStringLiteral("%1/%2").arg(round).arg(number);
                const ClipItem item = textClip(text.leftJustified(isLarge ? 200'000 : 3000, u'x'));
                store.insertAtTop(item, {});
                if (number % 5 == 4) {
                    const ClipItem erased = textClip(QStringLiteral("erased"));
                    store.insertAtTop(erased, {});
                    store.remove({erased.id}, ClipboardStore::Erasure::Final);
                }
                const QByteArray id = item.id.toRfc4122();
                if (store.flush() && ::write(acknowledged[1], id.constData(), 16) != 16)
                    return 1;
                if (number == 0)
                    dieAfter(killedAfterMicroseconds);
            }
        });
        ::close(acknowledged[1]);
        QFile acknowledgements;
        QVERIFY(acknowledgements.open(acknowledged[0], QIODevice::ReadOnly, QFile::AutoCloseHandle));
        const QByteArray ids = acknowledgements.readAll();
        QCOMPARE(exitStatus(child), -1);
        QVERIFY(!ids.isEmpty());

        QVERIFY(QJsonDocument::fromJson(fileContent(path("clipboard.json"))).isArray());
        ClipboardStore store(m_folder->path());
        const QList<ClipItem> items = store.load();
        for (qsizetype at = 0; at + 16 <= ids.size(); at += 16) {
            const QUuid id = QUuid::fromRfc4122(QByteArrayView(ids).sliced(at, 16));
            QVERIFY(std::any_of(items.begin(), items.end(), [&](const ClipItem &item) { return item.id == id; }));
        }
        QVERIFY(store.close());
        QVERIFY(ClipboardStore(m_folder->path()).load() == items);
        QVERIFY(!QFileInfo::exists(path("clipboard.journal")));
    }
}

void ClipboardStoreFaultTest::ignoresAJournalThatWasFolded()
{
    const QList<ClipItem> items = leaveJournal();
    const QByteArray spent = fileContent(path("clipboard.journal"));
    QVERIFY(spent.contains("second"));
    // Who only reads sees the same and leaves everything as it is, spent or not.
    QVERIFY(ClipboardStore::read(m_folder->path()) == items);
    QCOMPARE(fileContent(path("clipboard.journal")), spent);
    {
        ClipboardStore store(m_folder->path());
        QVERIFY(store.load() == items);
        store.remove({items[0].id}, ClipboardStore::Erasure::Final);
        QVERIFY(store.close());
    }
    // Killed between the renaming of the new array and the removal of the journal.
    writeFile(path("clipboard.journal"), spent);
    QVERIFY(ClipboardStore::read(m_folder->path()) == items.mid(1));
    QVERIFY(QFileInfo::exists(path("clipboard.journal")));
    ClipboardStore store(m_folder->path());
    QVERIFY(store.load() == items.mid(1));
    QVERIFY(!QFileInfo::exists(path("clipboard.journal")));
}

void ClipboardStoreFaultTest::takesATornJournalUpToTheTear()
{
    const QList<ClipItem> items = leaveJournal();
    const QByteArray whole = fileContent(path("clipboard.journal"));
    const qsizetype lastLine = whole.lastIndexOf('\n', -2) + 1;
    for (const qsizetype length : {whole.size() - 1, lastLine + 20, lastLine + 1, lastLine}) {
        writeFile(path("clipboard.journal"), whole.first(length));
        ClipboardStore store(m_folder->path());
        QVERIFY(store.load() == items.mid(1));
        // What comes after the tear is whole again.
        const ClipItem next = textClip(QStringLiteral("next"));
        store.insertAtTop(next, {});
        QVERIFY(store.flush());
        QTemporaryDir copy;
        for (const char *name : {"clipboard.json", "clipboard.journal"})
            QFile::copy(path(name), copy.path() + u'/' + QLatin1String(name));
        QCOMPARE(ClipboardStore(copy.path()).load().first(), next);
        store.remove({next.id}, ClipboardStore::Erasure::Undoable);
        QVERIFY(store.flush());
        const QByteArray array = fileContent(path("clipboard.json"));
        store.restore({}, {});
        QVERIFY(store.close());
        writeFile(path("clipboard.json"), array);
    }
}

void ClipboardStoreFaultTest::aForeignJournalCostsNothing_data()
{
    QTest::addColumn<bool>("keepsFirstLine");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("binary") << false << noise(5000, 1);
    QTest::newRow("other text") << false << QByteArray("hello\nworld\n");
    QTest::newRow("behind a good line") << true << QByteArray("\x01\x02{}\n{\"pin\":1}\n");
    QTest::newRow("unknown change") << true << QByteArray("{\"rename\":\"x\"}\n{\"delete\":[]}\n");
}

void ClipboardStoreFaultTest::aForeignJournalCostsNothing()
{
    QFETCH(bool, keepsFirstLine);
    QFETCH(QByteArray, line);
    QList<ClipItem> items = leaveJournal().mid(1);
    const QByteArray journal = fileContent(path("clipboard.journal"));
    const qsizetype firstLine = journal.indexOf('\n', journal.indexOf('\n') + 1) + 1;
    writeFile(path("clipboard.journal"), (keepsFirstLine ? journal.first(firstLine) : QByteArray()) + line);
    if (!keepsFirstLine)
        items.removeFirst();
    QTest::ignoreMessage(QtWarningMsg, kDamaged);
    ClipboardStore store(m_folder->path());
    QVERIFY(store.load() == items);
    const ClipItem next = textClip(QStringLiteral("next"));
    store.insertAtTop(next, {});
    QVERIFY(store.close());
    QVERIFY(ClipboardStore(m_folder->path()).load() == QList<ClipItem>({next}) + items);
    // Only what nobody understood: what was taken from it must not stay there when it is erased.
    const QStringList aside =
        QDir(m_folder->path()).entryList({QStringLiteral("clipboard.unreadable-*.journal")}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(fileContent(m_folder->path() + u'/' + aside.first()), line);
}

void ClipboardStoreFaultTest::keepsUndecodableFilesAside_data()
{
    const QByteArray good =
        R"({"id":"0B000000-0000-4000-8000-00000000000B","kind":"text","text":"a","date":1,"pinned":false})";
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << '[' + good.chopped(8);
    QTest::newRow("no end") << '[' + good;
    QTest::newRow("comma before the end") << '[' + good + ",]";
    QTest::newRow("more behind it") << '[' + good + "]x";
    QTest::newRow("binary") << noise(3000, 2);
    QTest::newRow("object") << good;
    QTest::newRow("elements of another type") << "[" + good + ",7]";
    QTest::newRow("unknown kind") << '[' + good + ',' + QByteArray(good).replace("text\",\"t", "video\",\"t") + ']';
    QTest::newRow("missing key") << '[' + QByteArray(good).replace(",\"pinned\":false", "") + ']';
    QTest::newRow("wrong type") << '[' + QByteArray(good).replace(":1", ":\"1\"") + ']';
    QTest::newRow("null for a required key") << '[' + QByteArray(good).replace("false", "null") + ']';
    QTest::newRow("no UUID") << '[' + QByteArray(good).replace("0B000000-", "0B000000") + ']';
    QTest::newRow("no Base64") << '[' + QByteArray(good).replace("\"text\":\"a\"", "\"imageData\":\"AA*A\"") + ']';
    QTest::newRow("no UTF-8") << '[' + QByteArray(good).replace("\"a\"", "\"\xff\"") + ']';
}

void ClipboardStoreFaultTest::keepsUndecodableFilesAside()
{
    QFETCH(QByteArray, content);
    writeFile(path("clipboard.json"), content);
    QTest::ignoreMessage(QtWarningMsg, kUnreadable);
    {
        ClipboardStore store(m_folder->path());
        QVERIFY(store.load().isEmpty());
        store.settle();
        QVERIFY(store.close());
        QCOMPARE(fileContent(path("clipboard.json")), content);
        store.insertAtTop(textClip(QStringLiteral("new")), {});
        QVERIFY(store.flush());
    }
    QCOMPARE(ClipboardStore(m_folder->path()).load().size(), 1);
    const QStringList aside =
        QDir(m_folder->path()).entryList({QStringLiteral("clipboard.unreadable-*.json")}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(fileContent(m_folder->path() + u'/' + aside.first()), content);
}

void ClipboardStoreFaultTest::savesAgainWhenThereIsRoom_data()
{
    QTest::addColumn<bool>("isLarge");
    QTest::newRow("whole rewrites") << false;
    QTest::newRow("journal") << true;
}

void ClipboardStoreFaultTest::savesAgainWhenThereIsRoom()
{
    QFETCH(bool, isLarge);
    QList<ClipItem> items;
    if (isLarge)
        items = leaveJournal();
    const ClipItem before = textClip(QStringLiteral("before"));
    const QByteArray image = noise(300'000, 6);
    const ClipItem during = imageClip(image);
    // A limit on the size of files stands for the full disk: writes end short or fail, as there.
    const pid_t child = inOwnProcess([&] {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        ::signal(SIGXFSZ, SIG_IGN);
        ClipboardStore store(m_folder->path());
        store.load();
        store.insertAtTop(before, {});
        if (!store.flush())
            return 1;
        const QByteArray array = fileContent(path("clipboard.json"));
        const QByteArray journal = fileContent(path("clipboard.journal"));
        rlimit limit = {100'000, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        store.insertAtTop(during, image);
        store.setPinned(before.id, true);
        if (store.flush() || fileContent(path("clipboard.json")) != array)
            return 2;
        if (!fileContent(path("clipboard.journal")).startsWith(journal))
            return 3;
        if (QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size() != (isLarge ? 2 : 1))
            return 4;
        // What is erased for good while nothing can be written does not get to the disk with the rest later.
        const ClipItem erased = textClip(QStringLiteral("needle in the memory"));
        store.insertAtTop(erased, {});
        store.flush();
        store.remove({erased.id}, ClipboardStore::Erasure::Final);
        limit.rlim_cur = 1'000'000; // enough for the journal, not for a large array
        ::setrlimit(RLIMIT_FSIZE, &limit);
        if (store.flush() == isLarge || folderContains(m_folder->path(), "needle"))
            return 6;
        limit.rlim_cur = RLIM_INFINITY;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return store.flush() ? 0 : 5;
    });
    QCOMPARE(exitStatus(child), 0);
    ClipboardStore store(m_folder->path());
    ClipItem pinned = before;
    pinned.pinned = true;
    QVERIFY(store.load() == QList<ClipItem>({during, pinned}) + items);
    QVERIFY(readImage(store, during.id) == image);
}

void ClipboardStoreFaultTest::writesAnewWhenTheFilesAreTakenAway()
{
    const QList<ClipItem> items = leaveJournal();
    ClipboardStore store(m_folder->path());
    QVERIFY(store.load() == items);
    QVERIFY(QFile::remove(path("clipboard.json")) && QFile::remove(path("clipboard.journal")));
    store.setPinned(items[1].id, true);
    QVERIFY(store.flush());
    QList<ClipItem> expected = items;
    expected[1].pinned = true;
    QTemporaryDir copy;
    QVERIFY(QFile::copy(path("clipboard.json"), copy.path() + QStringLiteral("/clipboard.json")));
    QVERIFY(ClipboardStore(copy.path()).load() == expected);
}

OSTRELLE_TEST(ClipboardStoreFaultTest)
#include "ClipboardStoreFaultTest.moc"
