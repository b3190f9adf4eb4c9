#include "records/SettingJson.h"

#include "foundation/DefaultsDatabase.h"
#include "records/NotchSizeText.h"
#include "records/SettingKeys.h"
#include "records/SettingValues.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ostrelle {
namespace {

using namespace SettingNames;

QJsonArray moduleNames(const QList<KestroModule> &modules)
{
    QJsonArray names;
    for (const KestroModule module : modules)
        names.append(rawValue(module));
    return names;
}

/// Each once and in the order of the tools, so that the file does not change without a reason.
QJsonArray enabledNames(const SettingValues &values)
{
    QList<KestroModule> enabled;
    for (const KestroModule module : activeModules(values)) {
        if (!enabled.contains(module))
            enabled.append(module);
    }
    // An assigned order may lack a module.
    for (const KestroModule module : kAllModules) {
        if (values.enabledModules.contains(module) && !enabled.contains(module))
            enabled.append(module);
    }
    return moduleNames(enabled);
}

QJsonValue optionalText(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject notchSizes(const QMap<QString, QSizeF> &sizes)
{
    QJsonObject object;
    for (auto size = sizes.begin(); size != sizes.end(); ++size)
        object.insert(size.key(), notchSizeText(size.value()));
    return object;
}

using Values = const SettingValues &;

struct Encoder
{
    QStringView key;
    QJsonValue (*encode)(Values values);
};

constexpr Encoder kEncoders[] = {
    {kShowAutomatically, [](Values v) -> QJsonValue { return v.showAutomatically; }},
    {kAnimationIntensity, [](Values v) -> QJsonValue { return rawValue(v.animationIntensity); }},
    {kAppearance, [](Values v) -> QJsonValue { return rawValue(v.appearance); }},
    {kNotchTheme, [](Values v) -> QJsonValue { return rawValue(v.notchTheme); }},
    {kHapticFeedback, [](Values v) -> QJsonValue { return v.hapticFeedback; }},
    {kHoverOpenDelay, [](Values v) -> QJsonValue { return v.hoverOpenDelay; }},
    {kCatchDraggedFiles, [](Values v) -> QJsonValue { return v.catchDraggedFiles; }},
    {kAutoCheckUpdates, [](Values v) -> QJsonValue { return v.autoCheckUpdates; }},
    {kSkippedUpdateVersion, [](Values v) -> QJsonValue { return optionalText(v.skippedUpdateVersion); }},
    {kModuleOrder, [](Values v) -> QJsonValue { return moduleNames(v.moduleOrder); }},
    {kEnabledModules, [](Values v) -> QJsonValue { return enabledNames(v); }},
    {kClipboardEnabled, [](Values v) -> QJsonValue { return v.clipboardEnabled; }},
    {kClipboardLimit, [](Values v) -> QJsonValue { return v.clipboardLimit; }},
    {kIgnoreConcealed, [](Values v) -> QJsonValue { return v.ignoreConcealed; }},
    {kClearOnQuit, [](Values v) -> QJsonValue { return v.clearOnQuit; }},
    {kExcludedApps, [](Values v) -> QJsonValue { return QJsonArray::fromStringList(v.excludedApps); }},
    {kHasCompletedOnboarding, [](Values v) -> QJsonValue { return v.hasCompletedOnboarding; }},
    {kDisplayNotch, [](Values v) -> QJsonValue { return notchSizes(v.displayNotch); }},
};

} // namespace

QJsonValue settingToJson(const SettingValues &values, QStringView key)
{
    for (const Encoder &encoder : kEncoders) {
        if (encoder.key == key)
            return encoder.encode(values);
    }
    return QJsonValue(QJsonValue::Undefined);
}

void storeSetting(DefaultsDatabase &database, const QString &key, const QJsonValue &value)
{
    if (value.isNull()) {
        database.remove(key);
        return;
    }
    database.setValue(key, value);
    if (key != kModuleOrder && key != kEnabledModules)
        return;
    const SettingValues inForce = loadSettings(database);
    for (const QStringView both : {kModuleOrder, kEnabledModules})
        database.setValue(both.toString(), settingToJson(inForce, both));
}

} // namespace ostrelle
