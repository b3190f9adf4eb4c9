#include "notch/ToolRegistry.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

class ToolRegistryTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void answersForToolsThatAreMissingOrBringLittle();
    void readsBadgesLive();
};

void ToolRegistryTest::answersForToolsThatAreMissingOrBringLittle()
{
    ToolRegistry registry;
    QCOMPARE(registry.find(KestroModule::Color), nullptr);
    QVERIFY(!registry.badge(KestroModule::Color));

    registry.add(KestroModule::Color, {});
    QVERIFY(registry.find(KestroModule::Color));
    QVERIFY(!registry.badge(KestroModule::Color));
    QCOMPARE(registry.find(KestroModule::Assets), nullptr);
}

void ToolRegistryTest::readsBadgesLive()
{
    ToolRegistry registry;
    std::optional<ModuleBadge> badge;
    registry.add(KestroModule::Assets, {.badge = [&badge] { return badge; }});
    QSignalSpy changes(&registry, &ToolRegistry::badgeChanged);

    QVERIFY(!registry.badge(KestroModule::Assets));
    badge = CountBadge{3};
    registry.notifyBadgeChanged(KestroModule::Assets);
    QCOMPARE(registry.badge(KestroModule::Assets), std::optional<ModuleBadge>(CountBadge{3}));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().first().value<KestroModule>(), KestroModule::Assets);
}

OSTRELLE_TEST(ToolRegistryTest)
#include "ToolRegistryTest.moc"
