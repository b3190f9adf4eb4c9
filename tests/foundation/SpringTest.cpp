#include "foundation/Spring.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>
#include <numbers>

using namespace ostrelle;

namespace {

bool isClose(Spring::State a, Spring::State b, double tolerance)
{
    return std::abs(a.displacement - b.displacement) < tolerance && std::abs(a.velocity - b.velocity) < tolerance;
}

constexpr Spring::State kStart{-120, 340};

} // namespace

class SpringTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void everyDamping_data()
    {
        QTest::addColumn<double>("damping");
        for (const double damping : {0.0, 0.3, 0.7, 0.84, 1 - 1e-5, 1 - 1e-9, 1.0, 1 + 1e-9, 1 + 1e-5, 1.3, 20.0})
            QTest::addRow("%.10g", damping) << damping;
    }

    void everyDamping()
    {
        QFETCH(double, damping);
        const Spring spring{0.42, damping};
        QVERIFY(isClose(spring.advanced(kStart, 0), kStart, 1e-12));

        // Where it is does not depend on when anybody looked.
        for (const double first : {0.0004, 0.016, 0.1, 0.5}) {
            for (const double second : {0.0001, 0.016, 0.3}) {
                const Spring::State inTwo = spring.advanced(spring.advanced(kStart, first), second);
                QVERIFY(isClose(inTwo, spring.advanced(kStart, first + second), 1e-7));
            }
        }

        // The equation of motion, by a difference quotient.
        const double omega = 2 * std::numbers::pi / spring.response;
        const double step = 1e-6;
        const Spring::State now = spring.advanced(kStart, 0.07);
        const Spring::State next = spring.advanced(kStart, 0.07 + step);
        const Spring::State before = spring.advanced(kStart, 0.07 - step);
        const double acceleration = (next.velocity - before.velocity) / (2 * step);
        const double wanted = -omega * omega * now.displacement - 2 * damping * omega * now.velocity;
        QVERIFY(std::abs((next.displacement - before.displacement) / (2 * step) - now.velocity) < 1e-3);
        QVERIFY(std::abs(acceleration - wanted) < 1e-2);
    }

    void hasNoSeamAtCriticalDamping()
    {
        for (double seconds = 0; seconds < 3; seconds += 0.0137) {
            const Spring::State critical = Spring{0.3, 1}.advanced(kStart, seconds);
            QVERIFY(isClose(Spring{0.3, 1 - 1e-10}.advanced(kStart, seconds), critical, 1e-6));
            QVERIFY(isClose(Spring{0.3, 1 + 1e-10}.advanced(kStart, seconds), critical, 1e-6));
        }
    }

    void overshootsByItsDampingOnly()
    {
        const auto lowest = [](double damping) {
            double least = 1;
            for (double seconds = 0; seconds < 2; seconds += 0.0005)
                least = std::min(least, Spring{0.42, damping}.advanced({1, 0}, seconds).displacement);
            return least;
        };
        QVERIFY(lowest(1) >= 0);
        QVERIFY(lowest(1.4) >= 0);
        const double overshoot = std::exp(-0.7 * std::numbers::pi / std::sqrt(1 - 0.7 * 0.7));
        QVERIFY(std::abs(lowest(0.7) + overshoot) < 1e-4);
    }

    void staysFiniteInLongWaits()
    {
        for (const double damping : {0.2, 1.0, 5.0, 400.0})
            QVERIFY(isClose(Spring{0.16, damping}.advanced(kStart, 1e6), {}, 1e-6));
    }
};

OSTRELLE_TEST(SpringTest)
#include "SpringTest.moc"
