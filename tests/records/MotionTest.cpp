#include "records/Motion.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>

using namespace ostrelle;

class MotionTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void springs_data()
    {
        QTest::addColumn<AnimationIntensity>("intensity");
        QTest::addColumn<QList<double>>("wanted"); // response and damping of surface, hover, zone
        QTest::newRow("subtle") << AnimationIntensity::Subtle << QList<double>{0.3444, 1, 0.1968, 1, 0.1804, 1};
        QTest::newRow("standard") << AnimationIntensity::Standard << QList<double>{0.42, 0.84, 0.24, 0.92, 0.22, 1};
        QTest::newRow("expressive") << AnimationIntensity::Expressive
                                    << QList<double>{0.4788, 0.70, 0.2736, 0.85, 0.2508, 1};
    }

    void springs()
    {
        QFETCH(AnimationIntensity, intensity);
        QFETCH(QList<double>, wanted);
        Motion::setIntensity(intensity);
        QList<double> seen;
        for (const Spring spring : {Motion::surface(), Motion::hover(), Motion::zone()})
            seen << spring.response << spring.dampingFraction;
        for (qsizetype i = 0; i < wanted.size(); ++i)
            QVERIFY2(std::abs(seen[i] - wanted[i]) < 1e-12, qPrintable(QString::number(seen[i], 'g', 17)));
        Motion::setIntensity(AnimationIntensity::Standard);
    }

    void fadesFollowTheIntensity()
    {
        using namespace std::chrono_literals;
        QCOMPARE(Motion::fade(0.16, AnimationIntensity::Subtle), std::chrono::nanoseconds(131'200us));
        QCOMPARE(Motion::fade(0.22, AnimationIntensity::Expressive), std::chrono::nanoseconds(250'800us));
    }

    void subtleNeverOvershoots()
    {
        for (const Spring spring :
             {Motion::surface(AnimationIntensity::Subtle), Motion::hover(AnimationIntensity::Subtle)}) {
            for (double seconds = 0; seconds < 2; seconds += 0.001)
                QVERIFY(spring.advanced({1, 0}, seconds).displacement >= 0);
        }
    }
};

OSTRELLE_TEST(MotionTest)
#include "MotionTest.moc"
