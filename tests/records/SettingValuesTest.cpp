#include "records/SettingValues.h"

#include "foundation/DefaultsDatabase.h"
#include "records/SettingJson.h"
#include "records/SettingKeys.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

namespace {

/// The settings that a stored file with these contents gives.
SettingValues loaded(const QByteArray &json)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("defaults.json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
        qFatal("cannot write the test's file");
    file.close();
    return loadSettings(DefaultsDatabase(file.fileName()));
}

QByteArray toJson(const QJsonValue &value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
}

} // namespace

class SettingValuesTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void emptyDatabaseGivesTheDefaults()
    {
        const SettingValues values = loaded("{}");
        QCOMPARE(values, SettingValues());
        QCOMPARE(activeModules(values), QList<KestroModule>(kAllModules.begin(), kAllModules.end()));
        QVERIFY(values.showAutomatically && values.ignoreConcealed && !values.clearOnQuit);
        QCOMPARE(values.clipboardLimit, 60);
        QCOMPARE(values.excludedApps.size(), 4);
    }

    void loads_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("inForce");
        const auto row = [](QStringView key, const QByteArray &stored, const QByteArray &inForce) {
            const QByteArray file = "{\"" + key.toUtf8() + "\":" + stored + "}";
            QTest::addRow("%s", file.constData()) << file << key.toString() << inForce;
        };
        using namespace SettingNames;
        row(kShowAutomatically, "false", "false");
        row(kShowAutomatically, "0", "false");
        row(kShowAutomatically, R"("false")", "true");
        row(kClearOnQuit, "2.5", "true");
        row(kClearOnQuit, "[true]", "false");
        row(kHasCompletedOnboarding, "1", "true");
        row(kHasCompletedOnboarding, "null", "false");
        row(kHoverOpenDelay, R"("0.2")", "1");
        row(kHoverOpenDelay, "true", "1");
        row(kHoverOpenDelay, "false", "0");
        row(kHoverOpenDelay, "-2", "-2");
        row(kClipboardLimit, "5", "5");
        row(kClipboardLimit, "12.9", "12");
        row(kClipboardLimit, "1e300", "60");
        row(kClipboardLimit, R"("5")", "60");
        row(kAnimationIntensity, R"("expressive")", R"("expressive")");
        row(kAnimationIntensity, R"("Expressive")", R"("standard")");
        row(kAppearance, "2", R"("system")");
        row(kNotchTheme, R"("mono")", R"("frost")");
        row(kNotchTheme, R"("neon")", R"("spectrum")");
        row(kSkippedUpdateVersion, R"("1.4")", R"("1.4")");
        row(kSkippedUpdateVersion, "1.4", "null");
        row(kModuleOrder, R"(["audioInfo","nothing","clipboard"])",
            R"(["audioInfo","clipboard","color","assets","projects","imageInfo"])");
        row(kModuleOrder, R"(["color","color"])",
            R"(["color","color","clipboard","assets","projects","imageInfo","audioInfo"])");
        row(kModuleOrder, R"(["color",7])", R"(["clipboard","color","assets","projects","imageInfo","audioInfo"])");
        row(kEnabledModules, "[]", "[]");
        row(kEnabledModules, R"(["projects","gone","color"])", R"(["color","projects"])");
        row(kEnabledModules, R"("color")", R"(["clipboard","color","assets","projects","imageInfo","audioInfo"])");
        row(kExcludedApps, "[]", "[]");
        row(kExcludedApps, R"(["a",1])", toJson(findSettingKey(kExcludedApps)->fallback));
        row(kDisplayNotch, R"({"DP-1":"0x4","eDP-1":"185.5x32","x":3})", R"({"eDP-1":"185.5x32"})");
        row(kDisplayNotch, R"(["185x32"])", "{}");
    }

    void loads()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, key);
        QFETCH(QByteArray, inForce);
        const SettingValues values = loaded(file);
        QCOMPARE(toJson(settingToJson(values, key)), inForce);
        // Nothing else differs from the defaults, apart from the enabled modules, which are stored in the modules'
        // order.
        for (const SettingKey &other : allSettingKeys()) {
            if (other.key != key && other.key != SettingNames::kEnabledModules)
                QCOMPARE(settingToJson(values, other.key), other.fallback);
        }
    }

    void readsTheOldThemeKeyOnlyWithoutTheNewOne()
    {
        QCOMPARE(loaded(R"({"appearance.seamAccent":"mono"})").notchTheme, NotchTheme::Frost);
        QCOMPARE(loaded(R"({"appearance.seamAccent":"ember"})").notchTheme, NotchTheme::Ember);
        const QByteArray both = R"({"appearance.seamAccent":"mono","appearance.notchTheme":"sunset"})";
        QCOMPARE(loaded(both).notchTheme, NotchTheme::Sunset);
        const QByteArray unknown = R"({"appearance.seamAccent":"mono","appearance.notchTheme":"neon"})";
        QCOMPARE(loaded(unknown).notchTheme, NotchTheme::Spectrum);
    }

    void activeModulesKeepOrderAndDuplicates()
    {
        SettingValues values;
        values.moduleOrder = {KestroModule::AudioInfo, KestroModule::Color, KestroModule::Clipboard,
                              KestroModule::AudioInfo};
        values.enabledModules = {KestroModule::Clipboard, KestroModule::AudioInfo, KestroModule::Assets};
        QCOMPARE(activeModules(values),
                 (QList<KestroModule>{KestroModule::AudioInfo, KestroModule::Clipboard, KestroModule::AudioInfo}));
        // Stored each once, and none is lost that the order lacks.
        QCOMPARE(toJson(settingToJson(values, SettingNames::kEnabledModules)),
                 QByteArray(R"(["audioInfo","clipboard","assets"])"));
        QVERIFY(settingToJson(values, SettingNames::kSeamAccent).isUndefined());
    }
};

OSTRELLE_TEST(SettingValuesTest)
#include "SettingValuesTest.moc"
