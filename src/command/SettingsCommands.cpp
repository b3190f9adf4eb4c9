#include "command/SettingsCommands.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StartProgram.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "records/SettingJson.h"
#include "records/SettingKeys.h"
#include "records/SettingValues.h"
#include "records/SettingsSection.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace ostrelle {

namespace {

ExitStatus unknownKey(const QString &key)
{
    return fail(ExitStatus::WrongUsage,
                QStringLiteral("settings: unknown key %1; see ostrelle settings list").arg(key));
}

/// JSON, or a bare word as a string.
QJsonValue valueFrom(const QString &word)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson('[' + word.toUtf8() + ']', &error);
    if (error.error == QJsonParseError::NoError && document.array().size() == 1)
        return document.array().first();
    return word;
}

/// The values in force of all keys, from the running program or from the file.
QJsonObject currentValues()
{
    if (auto client = ControlClient::connect()) {
        const ControlAnswer answer = client->ask(QStringLiteral("settings.list"));
        if (answer.status == ExitStatus::Done)
            return answer.result.toObject();
    }
    const SettingValues values = loadSettings(DefaultsDatabase(AppPaths::defaultsFile()));
    QJsonObject result;
    for (const SettingKey &key : allSettingKeys())
        result[key.key] = settingToJson(values, key.key);
    return result;
}

} // namespace

ExitStatus runSettings(const Invocation &invocation)
{
    const QString section = invocation.options.value(QStringLiteral("--section"));
    if (!section.isEmpty() && !settingsSectionFromRawValue(section))
        return fail(ExitStatus::WrongUsage,
                    QStringLiteral("settings: unknown section %1; see ostrelle settings --help").arg(section));
    return openSettingsOrBecome(section);
}

ExitStatus runSettingsList(const Invocation &invocation)
{
    const QJsonObject values = currentValues();
    if (invocation.json) {
        printOut(compactJson(values) + QLatin1Char('\n'));
        return ExitStatus::Done;
    }
    qsizetype width = 0;
    for (const SettingKey &key : allSettingKeys())
        width = std::max(width, key.key.size());
    for (const SettingKey &key : allSettingKeys())
        printOut(QStringLiteral("%1  %2\n")
                     .arg(key.key.toString().leftJustified(width), printable(compactJson(values[key.key]))));
    return ExitStatus::Done;
}

ExitStatus runSettingsGet(const Invocation &invocation)
{
    const QString key = invocation.arguments.first();
    if (!findSettingKey(key))
        return unknownKey(key);
    printOut(compactJson(currentValues()[key]) + QLatin1Char('\n'));
    return ExitStatus::Done;
}

ExitStatus runSettingsSet(const Invocation &invocation)
{
    const QString key = invocation.arguments.at(0);
    const SettingKey *row = findSettingKey(key);
    if (!row)
        return unknownKey(key);
    const QJsonValue value = valueFrom(invocation.arguments.at(1));
    if (const auto problem = settingProblem(*row, value))
        return fail(ExitStatus::WrongUsage, QStringLiteral("settings: %1 %2").arg(key, *problem));
    return editDefaults(QStringLiteral("settings"), QStringLiteral("settings.set"),
                        {{QStringLiteral("key"), key}, {QStringLiteral("value"), value}},
                        [&](DefaultsDatabase &database) { storeSetting(database, key, value); });
}

ExitStatus runSettingsReset(const Invocation &invocation)
{
    const QString key = invocation.arguments.first();
    if (!findSettingKey(key))
        return unknownKey(key);
    return editDefaults(QStringLiteral("settings"), QStringLiteral("settings.reset"), {{QStringLiteral("key"), key}},
                        [&](DefaultsDatabase &database) { database.remove(key); });
}

} // namespace ostrelle
