#include "records/ColorLists.h"
#include "foundation/DefaultsDatabase.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <optional>

using namespace ostrelle;

class ColorListsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void keepsTheNewestColorsOnce();
    void togglesFavorites();
    void storesThemAsBinaryData();
    void startsEmptyWhereNothingCanBeDecoded();
    void mendsAListPutTogetherByHand();
    void findsWhatIsMeant();

private:
    std::optional<QTemporaryDir> m_folder;
    std::optional<DefaultsDatabase> m_defaults;
};

namespace {

const QString kRecents = QStringLiteral("color.recents");
const QString kFavorites = QStringLiteral("color.favorites");

SampledColor grey(int step)
{
    return {step / 255.0, step / 255.0, step / 255.0};
}

QList<int> steps(const QList<SampledColor> &colors)
{
    QList<int> steps;
    for (const SampledColor &color : colors)
        steps.append(color.rgb255().red);
    return steps;
}

} // namespace

void ColorListsTest::init()
{
    TestBase::init();
    m_defaults.reset();
    m_folder.emplace();
    m_defaults.emplace(m_folder->filePath(QStringLiteral("defaults.json")));
}

void ColorListsTest::keepsTheNewestColorsOnce()
{
    ColorLists lists;
    for (int step = 1; step <= 20; ++step)
        lists.record(grey(step));
    QCOMPARE(lists.recents.size(), ColorLists::kMostRecents);
    QCOMPARE(steps(lists.recents).first(3), (QList<int>{20, 19, 18}));
    QCOMPARE(steps(lists.recents).last(), 3);
    lists.record(grey(5));
    lists.record(grey(5));
    QCOMPARE(lists.recents.size(), ColorLists::kMostRecents);
    QCOMPARE(steps(lists.recents).first(3), (QList<int>{5, 20, 19}));
    QCOMPARE(steps(lists.recents).last(), 3);
    // Equal is what is exactly equal.
    lists.record({5 / 255.0, 5 / 255.0, 5.000001 / 255});
    QCOMPARE(steps(lists.recents).first(3), (QList<int>{5, 5, 20}));
    QVERIFY(lists.favorites.isEmpty());
}

void ColorListsTest::togglesFavorites()
{
    ColorLists lists;
    for (int step = 1; step <= 25; ++step)
        lists.toggleFavorite(grey(step));
    QCOMPARE(lists.favorites.size(), ColorLists::kMostFavorites);
    QCOMPARE(steps(lists.favorites).first(), 25);
    QCOMPARE(steps(lists.favorites).last(), 2);
    lists.toggleFavorite(grey(24));
    QCOMPARE(steps(lists.favorites).first(2), (QList<int>{25, 23}));
    lists.toggleFavorite(grey(24));
    QCOMPARE(steps(lists.favorites).first(3), (QList<int>{24, 25, 23}));
    QVERIFY(lists.recents.isEmpty());
}

void ColorListsTest::storesThemAsBinaryData()
{
    ColorLists lists;
    lists.record({1, 0.5, 0});
    lists.record({0.1, 1.0 / 3, std::numeric_limits<double>::min()});
    lists.toggleFavorite({0, 0, 1});
    lists.store(*m_defaults);
    QCOMPARE(m_defaults->data(kFavorites), QByteArray(R"([{"b":1,"g":0,"r":0}])"));
    QVERIFY(m_defaults->flush());
    const DefaultsDatabase again(m_folder->filePath(QStringLiteral("defaults.json")));
    // Exactly as they were.
    QCOMPARE(ColorLists::load(again), lists);

    // What JSON has no word for takes its list away, and leaves the other.
    lists.record({std::numeric_limits<double>::quiet_NaN(), 0, 0});
    lists.store(*m_defaults);
    QVERIFY(!m_defaults->value(kRecents));
    QCOMPARE(ColorLists::load(*m_defaults).favorites, lists.favorites);
}

void ColorListsTest::startsEmptyWhereNothingCanBeDecoded()
{
    QCOMPARE(ColorLists::load(*m_defaults), ColorLists());
    for (const char *bad :
         {"", "{", "{}", "[1]", "[{}]", R"([{"r":1,"g":1}])", R"([{"r":1,"g":1,"b":1},{"r":1,"g":1,"b":"1"}])",
          R"([{"r":1,"g":1,"b":null}])", R"([{"r":1,"g":1,"b":1e999}])"}) {
        m_defaults->setData(kRecents, bad);
        m_defaults->setData(kFavorites, R"([{"r":0,"g":0,"b":1}])");
        const ColorLists lists = ColorLists::load(*m_defaults);
        QVERIFY2(lists.recents.isEmpty(), bad);
        QCOMPARE(lists.favorites, QList<SampledColor>{SampledColor(0, 0, 1)});
    }
    // Not as binary data.
    m_defaults->setValue(kRecents, QJsonArray{toJson(grey(1))});
    QVERIFY(ColorLists::load(*m_defaults).recents.isEmpty());
}

void ColorListsTest::mendsAListPutTogetherByHand()
{
    QList<SampledColor> colors{grey(1), grey(2), grey(1)};
    for (int step = 3; step < 40; ++step)
        colors.append(grey(step));
    m_defaults->setData(kRecents, encodedColors(colors).value());
    m_defaults->setData(kFavorites, encodedColors(colors).value());
    const ColorLists lists = ColorLists::load(*m_defaults);
    QCOMPARE(steps(lists.recents).first(3), (QList<int>{1, 2, 3}));
    QCOMPARE(lists.recents.size(), ColorLists::kMostRecents);
    QCOMPARE(lists.favorites.size(), ColorLists::kMostFavorites);
    // Components beyond 0 ... 1 are nobody's business here.
    m_defaults->setData(kRecents, R"([{"r":-1,"g":2,"b":1e300}])");
    QCOMPARE(ColorLists::load(*m_defaults).recents.size(), 1);
}

void ColorListsTest::findsWhatIsMeant()
{
    const SampledColor picked{0.5, 0.25, 0.75};
    const SampledColor typed{128 / 255.0, 64 / 255.0, 191 / 255.0};
    QCOMPARE(picked.id(), typed.id());
    QVERIFY(!(picked == typed));
    QCOMPARE(meantColor({grey(1), picked}, typed), picked);
    QCOMPARE(meantColor({typed, picked}, typed), typed);
    QCOMPARE(meantColor({grey(1)}, typed), typed);
}

OSTRELLE_TEST(ColorListsTest)
#include "ColorListsTest.moc"
