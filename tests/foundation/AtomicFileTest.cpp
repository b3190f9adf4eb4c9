#include "foundation/AtomicFile.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace ostrelle;

namespace {

/// While it lives, no file of this process may grow beyond `bytes`: a write stops half-way, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before = {};
};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

QStringList names(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

class AtomicFileTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("store.json"));
    }

    void replacesTheFileAsAWhole()
    {
        QVERIFY(!writeFileAtomically(m_path, "old"));
        QFile reader(m_path);
        QVERIFY(reader.open(QIODevice::ReadOnly));
        const QByteArray large(3'000'000, 'n');
        const mode_t before = ::umask(0);
        const auto problem = writeFileAtomically(m_path, large);
        ::umask(before);
        QVERIFY(!problem);
        QCOMPARE(reader.readAll(), QByteArray("old"));
        QCOMPARE(contents(m_path), large);
        QCOMPARE(names(m_folder->path()), QStringList{QStringLiteral("store.json")});
        struct stat facts = {};
        QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &facts), 0);
        QCOMPARE(facts.st_mode & 07777, mode_t(0600));
    }

    void leavesTheOldFileWholeWhenTheDiskIsFull()
    {
        const QByteArray old(50'000, 'o');
        QVERIFY(!writeFileAtomically(m_path, old));
        std::optional<QString> problem;
        {
            const FileSizeLimit limit(60'000);
            problem = writeFileAtomically(m_path, QByteArray(200'000, 'n'));
        }
        QVERIFY(problem);
        QVERIFY2(problem->startsWith(QStringLiteral("cannot write: ")), qPrintable(*problem));
        QCOMPARE(contents(m_path), old);
        QCOMPARE(names(m_folder->path()), QStringList{QStringLiteral("store.json")});
        QVERIFY(!writeFileAtomically(m_path, "new"));
        QCOMPARE(contents(m_path), QByteArray("new"));
    }

    void saysWhyItFailed()
    {
        QVERIFY(writeFileAtomically(m_folder->filePath(QStringLiteral("missing/store.json")), "x"));
        QVERIFY(QDir().mkdir(m_path));
        QVERIFY(writeFileAtomically(m_path, "x"));
        QVERIFY(names(m_folder->path()).isEmpty());
    }

    void removesOnlyWhatAKilledWriterLeft()
    {
        const QStringList others = {QStringLiteral(".store.json"), QStringLiteral(".store.json.backup-2"),
                                    QStringLiteral("other.json"), QStringLiteral("store.json")};
        for (const QString &name : others)
            QVERIFY(!writeFileAtomically(m_folder->filePath(name), "kept"));
        QVERIFY(!writeFileAtomically(m_folder->filePath(QStringLiteral(".store.json.aB3xY9")), "half"));
        removeUnfinishedWrites(m_path);
        QCOMPARE(names(m_folder->path()), others);
    }

    void keepsEveryUnreadableFile()
    {
        QCOMPARE(setAsideUnreadable(m_path), QString()); // somebody else took it away
        QSet<QString> aside;
        for (const QByteArray bytes : {"first", "second", "third"}) {
            QVERIFY(!writeFileAtomically(m_path, bytes));
            QVERIFY(QFile::setPermissions(m_path, QFile::Permissions(0x6644)));
            const auto kept = setAsideUnreadable(m_path);
            QVERIFY(kept);
            QCOMPARE(contents(*kept), bytes);
            QCOMPARE(QFile::permissions(*kept) & 0x77, QFile::Permissions());
            static const QRegularExpression form(QStringLiteral("/store\\.unreadable-\\d{8}-\\d{6}(-\\d+)?\\.json$"));
            QVERIFY2(form.match(*kept).hasMatch(), qPrintable(*kept));
            aside.insert(*kept);
        }
        QCOMPARE(aside.size(), 3);
        QVERIFY(!QFile::exists(m_path));

        const QStringList others = {QStringLiteral("store.unreadable-1.txt"),
                                    QStringLiteral("restore.unreadable-1.json")};
        for (const QString &name : others)
            QVERIFY(!writeFileAtomically(m_folder->filePath(name), "kept"));
        QVERIFY(removeUnreadable(m_path));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files, QDir::Name | QDir::Reversed), others);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

OSTRELLE_TEST(AtomicFileTest)
#include "AtomicFileTest.moc"
