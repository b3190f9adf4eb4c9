#include "clipboard/RelativeAge.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace ostrelle;

class RelativeAgeTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void namesTheLargestWholeUnit_data();
    void namesTheLargestWholeUnit();
};

void RelativeAgeTest::namesTheLargestWholeUnit_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("age");
    constexpr double kDay = 86400;
    const auto row = [](double seconds, const char *age) {
        QTest::addRow("%g", seconds) << seconds << QString::fromLatin1(age);
    };
    row(-3600, "now");
    row(std::numeric_limits<double>::quiet_NaN(), "now");
    row(44.9, "now");
    row(45, "45 sec.");
    row(59.9, "59 sec.");
    row(60, "1 min.");
    row(3599, "59 min.");
    row(3600, "1 hr.");
    row(kDay - 1, "23 hr.");
    row(kDay, "1 day");
    row(2 * kDay, "2 days");
    row(7 * kDay, "1 wk.");
    row(30 * kDay, "4 wk.");
    row(31 * kDay, "1 mo.");
    row(365 * kDay, "11 mo.");
    row(366 * kDay, "1 yr.");
    row(732 * kDay, "2 yr.");
    row(1e300, "999999 yr.");
}

void RelativeAgeTest::namesTheLargestWholeUnit()
{
    QFETCH(double, seconds);
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    QTEST(relativeAge(seconds), "age");
    QLocale::setDefault(before);
}

OSTRELLE_TEST(RelativeAgeTest)
#include "RelativeAgeTest.moc"
