#include "core/SettingsStore.h"

#include "foundation/DefaultsDatabase.h"
#include "records/Motion.h"
#include "records/SettingKeys.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;
using namespace SettingNames;

namespace {

/// A store on a database of its own.
struct Settings
{
    QTemporaryDir folder;
    DefaultsDatabase database{folder.filePath(QStringLiteral("defaults.json"))};
    SettingsStore store{database};

    std::optional<QJsonValue> stored(QStringView key) const { return database.value(key.toString()); }
};

QJsonArray names(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

} // namespace

class SettingsStoreTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void writesEachAssignmentUnderItsKey()
    {
        Settings settings;
        SettingsStore &store = settings.store;
        const auto isStored = [&settings](QStringView key, const QJsonValue &value) {
            return settings.stored(key) == value && settings.store.raw(key.toString()) == value;
        };
        store.setShowAutomatically(false);
        QVERIFY(isStored(kShowAutomatically, false));
        store.setAppearance(AppearancePreference::Light);
        QVERIFY(isStored(kAppearance, QStringLiteral("light")));
        store.setNotchTheme(NotchTheme::Ember);
        QVERIFY(isStored(kNotchTheme, QStringLiteral("ember")));
        store.setHapticFeedback(false);
        QVERIFY(isStored(kHapticFeedback, false));
        store.setHoverOpenDelay(-0.25);
        QVERIFY(isStored(kHoverOpenDelay, -0.25));
        store.setCatchDraggedFiles(false);
        QVERIFY(isStored(kCatchDraggedFiles, false));
        store.setAutoCheckUpdates(false);
        QVERIFY(isStored(kAutoCheckUpdates, false));
        store.setClipboardEnabled(false);
        QVERIFY(isStored(kClipboardEnabled, false));
        store.setClipboardLimit(5);
        QVERIFY(isStored(kClipboardLimit, 5));
        store.setIgnoreConcealed(false);
        QVERIFY(isStored(kIgnoreConcealed, false));
        store.setClearOnQuit(true);
        QVERIFY(isStored(kClearOnQuit, true));
        store.setExcludedApps({QStringLiteral("one")});
        QVERIFY(isStored(kExcludedApps, names({QStringLiteral("one")})));
        store.setHasCompletedOnboarding(true);
        QVERIFY(isStored(kHasCompletedOnboarding, true));
        store.setSkippedUpdateVersion(QStringLiteral("1.4"));
        QVERIFY(isStored(kSkippedUpdateVersion, QStringLiteral("1.4")));
        store.setSkippedUpdateVersion(std::nullopt);
        QVERIFY(!settings.stored(kSkippedUpdateVersion));
        QVERIFY(!store.skippedUpdateVersion());
    }

    void writesEqualValuesButTellsNobody()
    {
        Settings settings;
        int told = 0;
        const auto watch = settings.store.bindableClipboardEnabled().addNotifier([&told] { ++told; });
        settings.store.setClipboardEnabled(true);
        QCOMPARE(settings.stored(kClipboardEnabled), QJsonValue(true));
        QCOMPARE(told, 0);
        settings.store.setClipboardEnabled(false);
        QCOMPARE(told, 1);
        settings.store.setRaw(kClipboardLimit.toString(), 7);
        QCOMPARE(told, 1);
    }

    void writesOrderAndEnabledModulesTogether()
    {
        Settings settings;
        SettingsStore &store = settings.store;
        QList<QList<KestroModule>> seen;
        const auto watch =
            store.bindableActiveModules().addNotifier([&] { seen.append(settings.store.activeModules()); });
        const QList<KestroModule> enabled = {KestroModule::AudioInfo, KestroModule::Color};
        store.setEnabledModules({KestroModule::Color, KestroModule::AudioInfo});
        QCOMPARE(settings.stored(kModuleOrder).value().toArray().size(), 6);
        store.setModuleOrder({KestroModule::AudioInfo, KestroModule::Assets, KestroModule::Color});
        QCOMPARE(store.activeModules(), enabled);
        QCOMPARE(settings.stored(kModuleOrder),
                 QJsonValue(names({QStringLiteral("audioInfo"), QStringLiteral("assets"), QStringLiteral("color")})));
        QCOMPARE(settings.stored(kEnabledModules),
                 QJsonValue(names({QStringLiteral("audioInfo"), QStringLiteral("color")})));
        QCOMPARE(seen.size(), 2);
        QCOMPARE(seen.last(), enabled);
        store.setModuleOrder({KestroModule::AudioInfo, KestroModule::Color});
        QCOMPARE(seen.size(), 2);
    }

    void observersSeeAFinishedState()
    {
        Settings settings;
        SettingsStore &store = settings.store;
        QStringList seen;
        const auto note = [&] {
            seen.append(rawValue(Motion::intensity()) + u' ' +
                        settings.stored(kAnimationIntensity).value_or(QJsonValue()).toString());
        };
        const auto watch = store.bindableAnimationIntensity().addNotifier(note);
        store.setAnimationIntensity(AnimationIntensity::Subtle);
        store.setRaw(kAnimationIntensity.toString(), QStringLiteral("expressive"));
        store.reset(kAnimationIntensity.toString());
        QCOMPARE(seen, (QStringList{QStringLiteral("subtle subtle"), QStringLiteral("expressive expressive"),
                                    QStringLiteral("standard ")}));
    }

    void takesRawValuesAsLoadingDoes()
    {
        Settings settings;
        SettingsStore &store = settings.store;
        store.setRaw(kModuleOrder.toString(), names({QStringLiteral("imageInfo")}));
        QCOMPARE(store.moduleOrder().first(), KestroModule::ImageInfo);
        QCOMPARE(store.moduleOrder().size(), 6);
        QCOMPARE(settings.stored(kModuleOrder).value().toArray().size(), 6);
        QCOMPARE(settings.stored(kEnabledModules).value().toArray().size(), 6);
        store.setRaw(kDisplayNotch.toString(), QJsonObject{{QStringLiteral("eDP-1"), QStringLiteral("185x32")}});
        QCOMPARE(store.displayNotch().value(QStringLiteral("eDP-1")), QSizeF(185, 32));
        store.setSkippedUpdateVersion(QStringLiteral("1.4"));
        store.setRaw(kSkippedUpdateVersion.toString(), QJsonValue());
        QVERIFY(!settings.stored(kSkippedUpdateVersion));
        store.reset(kModuleOrder.toString());
        store.reset(kEnabledModules.toString());
        store.reset(kDisplayNotch.toString());
        for (const SettingKey &key : allSettingKeys()) {
            QCOMPARE(store.raw(key.key.toString()), key.fallback);
            QVERIFY(!settings.stored(key.key));
        }
    }

    void leavesTheOldThemeKeyAlone()
    {
        Settings settings;
        settings.database.setValue(kSeamAccent.toString(), QStringLiteral("mono"));
        SettingsStore store(settings.database);
        QCOMPARE(store.notchTheme(), NotchTheme::Frost);
        QVERIFY(!settings.stored(kNotchTheme));
        store.setNotchTheme(NotchTheme::Aurora);
        QCOMPARE(settings.stored(kNotchTheme), QJsonValue(QStringLiteral("aurora")));
        QCOMPARE(settings.stored(kSeamAccent), QJsonValue(QStringLiteral("mono")));
    }

    void canOnlyBeObservedThroughItsBindables()
    {
        Settings settings;
        QVERIFY(settings.store.bindableActiveModules().isReadOnly());
        QVERIFY(settings.store.bindableClipboardEnabled().isReadOnly());
        QProperty<int> doubled([&] { return 2 * settings.store.bindableClipboardLimit().value(); });
        settings.store.setClipboardLimit(21);
        QCOMPARE(doubled.value(), 42);
    }
};

OSTRELLE_TEST(SettingsStoreTest)
#include "SettingsStoreTest.moc"
