#include "foundation/SystemTaskScheduler.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QEventLoop>
#include <QTest>

#include <vector>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

/// A scheduler and a way to let its time pass until something is true.
struct Subject
{
    virtual ~Subject() = default;
    virtual TaskScheduler &scheduler() = 0;
    virtual bool passUntil(const std::function<bool()> &condition) = 0;

    /// Lets so much time pass that everything due before it has been delivered.
    void pass(std::chrono::nanoseconds duration)
    {
        bool isOver = false;
        const Task end = scheduler().after(duration, nullptr, [&isOver] { isOver = true; });
        QVERIFY(passUntil([&isOver] { return isOver; }));
    }
};

struct ManualSubject final : Subject
{
    TaskScheduler &scheduler() override { return manual; }
    bool passUntil(const std::function<bool()> &condition) override
    {
        for (int step = 0; step < 10'000 && !condition(); ++step)
            manual.advance(1ms);
        return condition();
    }
    ManualTaskScheduler manual;
};

struct SystemSubject final : Subject
{
    TaskScheduler &scheduler() override { return system; }
    bool passUntil(const std::function<bool()> &condition) override { return QTest::qWaitFor(condition, 10'000); }
    SystemTaskScheduler system;
};

} // namespace

class TaskSchedulerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void contract_data()
    {
        QTest::addColumn<bool>("isManual");
        QTest::newRow("manual") << true;
        QTest::newRow("system") << false;
    }

    void contract()
    {
        QFETCH(bool, isManual);
        const auto make = [isManual]() -> std::unique_ptr<Subject> {
            if (isManual)
                return std::make_unique<ManualSubject>();
            return std::make_unique<SystemSubject>();
        };
        for (const auto check : {&TaskSchedulerTest::firesOnceAndNotEarly, &TaskSchedulerTest::waitsForTheEventLoop,
                                 &TaskSchedulerTest::firesInOrder, &TaskSchedulerTest::repeats,
                                 &TaskSchedulerTest::isSilentAfterItsEnd, &TaskSchedulerTest::survivesItsOwnEnd}) {
            const std::unique_ptr<Subject> subject = make();
            (this->*check)(*subject);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void survivesCancellingInANestedEventLoop()
    {
        SystemTaskScheduler scheduler;
        Task outer;
        int outerCount = 0;
        bool isDone = false;
        outer = scheduler.every(1ms, this, [&] {
            ++outerCount;
            QEventLoop nested;
            const Task inner = scheduler.after(5ms, this, [&] {
                outer.cancel();
                nested.quit();
            });
            nested.exec();
            isDone = true;
        });
        QVERIFY(QTest::qWaitFor([&] { return isDone; }));
        QCOMPARE(outerCount, 1);
    }

    void manualClockWalksThroughDeadlines()
    {
        ManualTaskScheduler scheduler;
        const MonotonicTime start = scheduler.now();
        std::vector<MonotonicTime> times;
        const Task interval = scheduler.every(300ms, this, [&] { times.push_back(scheduler.now() - start); });
        Task chained;
        const Task first = scheduler.after(400ms, this, [&] {
            chained = scheduler.after(100ms, this, [&] { times.push_back(scheduler.now() - start); });
        });
        QCOMPARE(scheduler.nextDeadline(), start + 300ms);
        scheduler.advance(1s);
        QVERIFY((times == std::vector<MonotonicTime>{300ms, 500ms, 600ms, 900ms}));
        QCOMPARE(scheduler.now(), start + 1s);
        QCOMPARE(scheduler.firedCount(), 5);
        QCOMPARE(scheduler.pendingCount(), 1);
    }

    void manualClockJumpsLikeASuspension()
    {
        ManualTaskScheduler scheduler;
        int ticks = 0;
        const Task interval = scheduler.every(500ms, this, [&] { ++ticks; });
        scheduler.jump(1h);
        QCOMPARE(ticks, 1);
        scheduler.advance(499ms);
        QCOMPARE(ticks, 1);
        scheduler.advance(1ms);
        QCOMPARE(ticks, 2);
    }

private:
    void firesOnceAndNotEarly(Subject &subject)
    {
        const MonotonicTime start = subject.scheduler().now();
        MonotonicTime firedAt{};
        int count = 0;
        const Task task = subject.scheduler().after(20'500us, this, [&] {
            ++count;
            firedAt = subject.scheduler().now();
        });
        QVERIFY(task.isPending());
        QVERIFY(subject.passUntil([&] { return count > 0; }));
        QVERIFY(firedAt - start >= 20'500us);
        QVERIFY(!task.isPending());
        subject.pass(50ms);
        QCOMPARE(count, 1);
    }

    void waitsForTheEventLoop(Subject &subject)
    {
        bool hasReturned = false;
        bool wasEarly = false;
        bool hasFired = false;
        const Task task = subject.scheduler().after(0s, this, [&] {
            wasEarly = !hasReturned;
            hasFired = true;
        });
        hasReturned = true;
        QVERIFY(!hasFired);
        QVERIFY(subject.passUntil([&] { return hasFired; }));
        QVERIFY(!wasEarly);
    }

    void firesInOrder(Subject &subject)
    {
        std::vector<int> order;
        const Task last = subject.scheduler().after(60ms, this, [&] { order.push_back(3); });
        const Task first = subject.scheduler().after(10ms, this, [&] { order.push_back(1); });
        const Task second = subject.scheduler().after(30ms, this, [&] { order.push_back(2); });
        QVERIFY(subject.passUntil([&] { return order.size() == 3; }));
        QVERIFY((order == std::vector<int>{1, 2, 3}));
    }

    void repeats(Subject &subject)
    {
        int count = 0;
        Task task = subject.scheduler().every(5ms, this, [&] { ++count; });
        QVERIFY(subject.passUntil([&] { return count >= 3; }));
        QVERIFY(task.isPending());
        task.cancel();
        task.cancel();
        const int before = count;
        subject.pass(30ms);
        QCOMPARE(count, before);
    }

    void isSilentAfterItsEnd(Subject &subject)
    {
        int count = 0;
        const auto work = [&] { ++count; };
        Task replaced = subject.scheduler().after(5ms, this, work);
        replaced = subject.scheduler().after(10ms, this, [] {});
        {
            const Task destroyed = subject.scheduler().after(5ms, this, work);
        }
        auto owner = std::make_unique<QObject>();
        const Task orphan = subject.scheduler().after(5ms, owner.get(), work);
        const Task repeatingOrphan = subject.scheduler().every(5ms, owner.get(), work);
        owner.reset();
        QVERIFY(!orphan.isPending() && !repeatingOrphan.isPending());
        subject.pass(40ms);
        QCOMPARE(count, 0);
        QVERIFY(!replaced.isPending());
    }

    void survivesItsOwnEnd(Subject &subject)
    {
        // The captured string is on the heap: the sanitizer sees a closure that is used after its end.
        const QString text(200, u'x');
        QString seen;
        Task cancelled;
        cancelled = subject.scheduler().every(3ms, this, [&seen, &cancelled, text] {
            cancelled.cancel();
            seen += text;
        });
        Task replaced;
        bool hasFollowed = false;
        replaced = subject.scheduler().after(6ms, this, [&, text] {
            replaced = subject.scheduler().after(3ms, this, [&] { hasFollowed = true; });
            seen += text;
        });
        auto owner = std::make_unique<QObject>();
        const Task ownerless = subject.scheduler().every(3ms, owner.get(), [&seen, &owner, text] {
            owner.reset();
            seen += text;
        });
        QVERIFY(subject.passUntil([&] { return hasFollowed; }));
        subject.pass(20ms);
        QCOMPARE(seen, QString(600, u'x'));
        QVERIFY(!cancelled.isPending() && !ownerless.isPending());
    }
};

OSTRELLE_TEST(TaskSchedulerTest)
#include "TaskSchedulerTest.moc"
