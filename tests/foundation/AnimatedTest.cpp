#include "foundation/AnimatedGeometry.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

constexpr Spring kSpring{0.42, 0.84};
constexpr double kThreshold = 0.01;

} // namespace

class AnimatedTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void comesToRestExactlyOnTheTarget()
    {
        Animated<double> width(100, kThreshold);
        width.animateTo(340.1, kSpring, 5s);
        QVERIFY(width.isMoving());
        QCOMPARE(width.value(5s), 100.0);
        MonotonicTime now = 5s;
        while (width.isMoving() && now < 10s) {
            now += 16ms;
            width.value(now);
        }
        QVERIFY2(now < 7s, "a spring of 0.42 s is at rest within two seconds");
        QVERIFY(width.value(now) == 340.1);
    }

    void keepsPositionAndVelocityWhenRetargeted()
    {
        Animated<double> height(0, kThreshold);
        height.animateTo(200, kSpring, 0s);
        Animated<double> undisturbed = height;
        const auto slope = [](Animated<double> value, MonotonicTime at) {
            return (value.value(at + 1us) - value.value(at)) / 1e-6;
        };
        const MonotonicTime turn = 90ms;
        height.animateTo(-50, Spring{0.24, 1}, turn);
        QVERIFY(std::abs(height.value(turn) - undisturbed.value(turn)) < 1e-9);
        QVERIFY(std::abs(slope(height, turn) - slope(undisturbed, turn)) < 1);
        QCOMPARE(height.target(), -50.0);
        QCOMPARE(height.value(5s), -50.0);
    }

    void doesNotRestWhilePassingTheTarget()
    {
        Animated<double> x(0, kThreshold);
        x.animateTo(100, Spring{0.4, 0.3}, 0s);
        MonotonicTime now = 0s;
        while (x.value(now) < 100)
            now += 100us;
        QVERIFY(x.isMoving());
        QVERIFY(x.value(now + 20ms) > 101);
    }

    void doesNotMoveToWhereItIs()
    {
        Animated<QPointF> point(QPointF(3, 4), kThreshold);
        point.animateTo(QPointF(3, 4), kSpring, 1s);
        QVERIFY(!point.isMoving());
        point.animateTo(QPointF(30, 4), kSpring, 1s);
        point.jumpTo(QPointF(7, 7));
        QVERIFY(!point.isMoving());
        QCOMPARE(point.value(2s), QPointF(7, 7));
    }

    void movesEveryComponentOfGeometry()
    {
        const QRectF from(10, 0, 200, 32);
        const QRectF to(-100, 5, 640, 320);
        Animated<QRectF> rect(from, kThreshold);
        Animated<QSizeF> size(from.size(), kThreshold);
        Animated<QPointF> corner(from.topLeft(), kThreshold);
        rect.animateTo(to, kSpring, 0s);
        size.animateTo(to.size(), kSpring, 0s);
        corner.animateTo(to.topLeft(), kSpring, 0s);
        const QRectF midway = rect.value(80ms);
        QCOMPARE(midway, QRectF(corner.value(80ms), size.value(80ms)));
        QVERIFY(midway.x() < 10 && midway.y() > 0 && midway.width() > 200 && midway.height() > 32);
        QCOMPARE(rect.value(9s), to);
    }
};

OSTRELLE_TEST(AnimatedTest)
#include "AnimatedTest.moc"
