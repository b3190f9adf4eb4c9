#include "command/StoreSteps.h"

#include "command/CommandLine.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"

namespace ostrelle {

std::optional<int> numberFrom(const Invocation &invocation, qsizetype index)
{
    const QString &word = invocation.arguments.at(index);
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (isNumber && number >= 1)
        return number;
    // "N" or "M", as the usage calls it.
    const QString name =
        invocation.command->arguments.section(QLatin1Char(' '), static_cast<int>(index), static_cast<int>(index));
    fail(ExitStatus::WrongUsage,
         QStringLiteral("%1: %2 is a number from 1, not %3").arg(invocation.command->name, name, printable(word)));
    return std::nullopt;
}

ExitStatus noEntry(const QString &tool, int number)
{
    return fail(ExitStatus::Failed, QStringLiteral("%1: there is no entry %2").arg(tool).arg(number));
}

ExitStatus reported(const ControlAnswer &answer)
{
    return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, printable(answer.error));
}

ExitStatus editStores(const QString &verb, const QJsonObject &arguments, const std::function<ExitStatus()> &edit)
{
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access))
        return reported(client->ask(verb, arguments));
    if (const auto *problem = std::get_if<QString>(&access))
        return fail(ExitStatus::Failed, *problem);
    return edit();
}

ExitStatus editDefaults(const QString &tool, const QString &verb, const QJsonObject &arguments,
                        const std::function<void(DefaultsDatabase &)> &edit)
{
    return editStores(verb, arguments, [&] {
        const QString path = AppPaths::defaultsFile();
        DefaultsDatabase database(path);
        muteStoreWarnings();
        edit(database);
        return database.flush() ? ExitStatus::Done
                                : fail(ExitStatus::Failed, QStringLiteral("%1: cannot write %2").arg(tool, path));
    });
}

ExitStatus listRecords(const Invocation &invocation, const QString &verb, const std::function<QJsonArray()> &stored,
                       const std::function<QString(const QJsonArray &)> &text)
{
    QJsonArray records;
    if (auto client = ControlClient::connect()) {
        const ControlAnswer answer = client->ask(verb);
        if (answer.status != ExitStatus::Done)
            return reported(answer);
        records = answer.result.toArray();
    } else {
        records = stored();
    }
    printOut(invocation.json ? compactJson(records) + QLatin1Char('\n') : text(records));
    return ExitStatus::Done;
}

} // namespace ostrelle
