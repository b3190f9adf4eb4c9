#include "records/SettingKeys.h"

#include "records/KestroModule.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTest>

using namespace ostrelle;

namespace {

QJsonValue fromJson(const QByteArray &json)
{
    return QJsonDocument::fromJson('[' + json + ']').array().first();
}

} // namespace

class SettingKeysTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void everyDefaultCanBeStored()
    {
        QSet<QString> keys;
        for (const SettingKey &key : allSettingKeys()) {
            QVERIFY2(!settingProblem(key, key.fallback), qPrintable(key.key.toString()));
            QVERIFY(!key.help.isEmpty());
            QVERIFY(findSettingKey(key.key) == &key);
            keys.insert(key.key.toString());
        }
        QCOMPARE(keys.size(), qsizetype(allSettingKeys().size()));
        QVERIFY(!findSettingKey(SettingNames::kSeamAccent));
        QVERIFY(!findSettingKey(u"general.haptic"));
        QVERIFY(!findSettingKey(u""));
    }

    void accepts_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("json");
        const auto row = [](QStringView key, const QByteArray &json) {
            QTest::addRow("%ls %s", qUtf16Printable(key.toString()), json.constData()) << key.toString() << json;
        };
        row(SettingNames::kHoverOpenDelay, "0");
        row(SettingNames::kHoverOpenDelay, "-3.5");
        row(SettingNames::kClipboardLimit, "5");
        row(SettingNames::kClipboardLimit, "-1");
        row(SettingNames::kEnabledModules, "[]");
        row(SettingNames::kModuleOrder, R"(["audioInfo", "color", "color"])");
        row(SettingNames::kExcludedApps, R"(["any thing", ""])");
        row(SettingNames::kSkippedUpdateVersion, "null");
        row(SettingNames::kSkippedUpdateVersion, R"("2.0")");
        row(SettingNames::kDisplayNotch, R"({"eDP-1": "185x32", "HDMI-1": "200.5x38.25"})");
        row(SettingNames::kDisplayNotch, "{}");
    }

    void accepts()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, json);
        QCOMPARE(settingProblem(*findSettingKey(key), fromJson(json)), std::nullopt);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("problem");
        const auto row = [](QStringView key, const QByteArray &json, const QString &problem) {
            QTest::addRow("%ls %s", qUtf16Printable(key.toString()), json.constData())
                << key.toString() << json << problem;
        };
        const QString boolean = QStringLiteral("expects true or false");
        row(SettingNames::kShowAutomatically, "1", boolean);
        row(SettingNames::kShowAutomatically, R"("true")", boolean);
        row(SettingNames::kClearOnQuit, "null", boolean);
        const QString whole = QStringLiteral("expects a whole number");
        row(SettingNames::kClipboardLimit, "60.5", whole);
        row(SettingNames::kClipboardLimit, "1e12", whole);
        row(SettingNames::kClipboardLimit, "true", whole);
        row(SettingNames::kHoverOpenDelay, R"("1.0")", QStringLiteral("expects a number"));
        const QString intensity = QStringLiteral("is not one of subtle, standard, expressive");
        row(SettingNames::kAnimationIntensity, R"("Subtle")", intensity);
        row(SettingNames::kAnimationIntensity, "3", intensity);
        row(SettingNames::kAppearance, R"("")", QStringLiteral("is not one of system, light, dark"));
        row(SettingNames::kNotchTheme, R"("mono")",
            QStringLiteral("is not one of spectrum, sunset, aurora, ember, ultraviolet, frost"));
        row(SettingNames::kSkippedUpdateVersion, "2.0", QStringLiteral("expects a string or null"));
        const QString list = QStringLiteral("expects a list of strings");
        row(SettingNames::kExcludedApps, R"("one")", list);
        row(SettingNames::kExcludedApps, R"(["one", 2])", list);
        row(SettingNames::kModuleOrder, R"({"0": "color"})", list);
        row(SettingNames::kModuleOrder, R"(["color", "Clipboard"])",
            QStringLiteral("holds \"Clipboard\", which is not one of clipboard, color, assets, projects, imageInfo, "
                           "audioInfo"));
        row(SettingNames::kDisplayNotch, R"(["185x32"])",
            QStringLiteral("expects an object of output names with sizes such as \"185x32\""));
        for (const char *size :
             {"185", "185x", "x32", "0x32", "-5x32", "185X32", "1x2x3", "nanx32", "infx32", "ax32"}) {
            row(SettingNames::kDisplayNotch, QByteArray("{\"eDP-1\": \"") + size + "\"}",
                QStringLiteral("expects a size such as \"185x32\" for \"eDP-1\""));
        }
        row(SettingNames::kDisplayNotch, R"({"eDP-1": 185})",
            QStringLiteral("expects a size such as \"185x32\" for \"eDP-1\""));
    }

    void refuses()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, json);
        QFETCH(QString, problem);
        QCOMPARE(settingProblem(*findSettingKey(key), fromJson(json)), problem);
    }
};

OSTRELLE_TEST(SettingKeysTest)
#include "SettingKeysTest.moc"
