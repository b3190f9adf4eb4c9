#include "app/SettingsRequests.h"

#include "app/DefaultsEdit.h"
#include "app/RequestRouter.h"
#include "core/SettingsStore.h"
#include "records/SettingKeys.h"

namespace ostrelle {

namespace {

RequestAnswer unknownKey(const QString &key)
{
    return RequestAnswer::wrongUsage(QStringLiteral("settings: unknown key %1").arg(key));
}

RequestAnswer setValue(SettingsStore &settings, const QString &key, const QJsonValue &value)
{
    const SettingKey *row = findSettingKey(key);
    if (!row)
        return unknownKey(key);
    if (const auto problem = settingProblem(*row, value))
        return RequestAnswer::wrongUsage(QStringLiteral("settings: %1 %2").arg(key, *problem));
    if (value.isNull())
        settings.reset(key);
    else
        settings.setRaw(key, value);
    return RequestAnswer::done();
}

} // namespace

void addSettingsRequests(RequestRouter &router, SettingsStore &settings, DefaultsDatabase &defaults,
                         const std::function<void(SettingsSection section)> &open)
{
    router.add(QStringLiteral("settings.open"), [open](const QJsonObject &request) {
        const QString name = request[u"section"].toString();
        const auto section = settingsSectionFromRawValue(name);
        if (!name.isEmpty() && !section)
            return RequestAnswer::wrongUsage(QStringLiteral("settings: unknown section %1").arg(name));
        open(section.value_or(SettingsSection::General));
        return RequestAnswer::done();
    });
    router.add(QStringLiteral("settings.list"), [&settings](const QJsonObject &) {
        QJsonObject values;
        for (const SettingKey &key : allSettingKeys())
            values[key.key] = settings.raw(key.key.toString());
        return RequestAnswer::done(values);
    });
    addDefaultsEdit(router, QStringLiteral("settings.set"), defaults, settings,
                    [&settings](const QJsonObject &request) {
                        return setValue(settings, request[u"key"].toString(), request[u"value"]);
                    });
    addDefaultsEdit(router, QStringLiteral("settings.reset"), defaults, settings,
                    [&settings](const QJsonObject &request) {
                        const QString key = request[u"key"].toString();
                        if (!findSettingKey(key))
                            return unknownKey(key);
                        settings.reset(key);
                        return RequestAnswer::done();
                    });
}

} // namespace ostrelle
