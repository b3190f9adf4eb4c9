#include "foundation/SerialQueue.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace ostrelle;

class SerialQueueTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void runsJobsInOrderOnOneOtherThread()
    {
        std::vector<int> order;
        bool isElsewhere = true;
        SerialQueue queue;
        for (int job = 0; job < 500; ++job) {
            queue.post([&order, &isElsewhere, job, poster = std::this_thread::get_id()] {
                order.push_back(job);
                isElsewhere = isElsewhere && std::this_thread::get_id() != poster;
            });
        }
        queue.drain();
        QCOMPARE(order.size(), std::size_t(500));
        QVERIFY(std::is_sorted(order.begin(), order.end()));
        QVERIFY(isElsewhere);
        queue.drain();
    }

    void finishesEverythingAtItsEnd()
    {
        int count = 0;
        {
            SerialQueue queue;
            for (int job = 0; job < 100; ++job)
                queue.post([&count] { ++count; });
        }
        QCOMPARE(count, 100);
        const SerialQueue neverUsed;
    }
};

OSTRELLE_TEST(SerialQueueTest)
#include "SerialQueueTest.moc"
