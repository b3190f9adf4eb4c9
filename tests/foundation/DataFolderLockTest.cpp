#include "foundation/DataFolderLock.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace ostrelle;

namespace {

/// Another process that holds the lock of `folder` until it is killed.
class Holder
{
public:
    explicit Holder(const QString &folder)
    {
        int ends[2] = {-1, -1};
        if (::pipe(ends) != 0)
            return;
        m_process = ::fork();
        if (m_process == 0) {
            const auto lock = DataFolderLock::tryTake(folder);
            const char answer = lock ? 'y' : 'n';
            (void)!::write(ends[1], &answer, 1);
            for (;;)
                ::pause();
        }
        ::close(ends[1]);
        char answer = 'n';
        m_hasLock = ::read(ends[0], &answer, 1) == 1 && answer == 'y';
        ::close(ends[0]);
    }
    ~Holder() { kill(); }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

    bool hasLock() const { return m_hasLock; }
    void kill()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = -1;
    }

private:
    pid_t m_process = -1;
    bool m_hasLock = false;
};

} // namespace

class DataFolderLockTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void isFreeAgainHoweverItsHolderEnds()
    {
        const QTemporaryDir home;
        const QString folder = home.filePath(QStringLiteral("data/Ostrelle"));
        Holder holder(folder);
        QVERIFY(holder.hasLock());
        auto failure = DataFolderLock::Failure::Unavailable;
        QVERIFY(!DataFolderLock::tryTake(folder, &failure));
        QCOMPARE(failure, DataFolderLock::Failure::HeldByOther);
        holder.kill();
        QVERIFY(DataFolderLock::tryTake(folder));
        QVERIFY(QFile::exists(folder + QStringLiteral("/lock")));
    }

    void isHeldAsLongAsItLives()
    {
        const QTemporaryDir home;
        auto lock = DataFolderLock::tryTake(home.path());
        QVERIFY(lock);
        std::optional<DataFolderLock> moved = std::move(*lock);
        lock.reset();
        QVERIFY(!Holder(home.path()).hasLock());
        QVERIFY(!DataFolderLock::tryTake(home.path()));
        moved.reset();
        QVERIFY(Holder(home.path()).hasLock());
    }

    void saysWhenThereIsNoFolder()
    {
        const QTemporaryDir home;
        QFile file(home.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        auto failure = DataFolderLock::Failure::HeldByOther;
        QVERIFY(!DataFolderLock::tryTake(home.filePath(QStringLiteral("file/Ostrelle")), &failure));
        QCOMPARE(failure, DataFolderLock::Failure::Unavailable);
    }
};

OSTRELLE_TEST(DataFolderLockTest)
#include "DataFolderLockTest.moc"
