#include "command/ShortcutsCommands.h"

#include "command/CommandLine.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "records/KeyComboText.h"
#include "records/KeyNames.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>

namespace ostrelle {

namespace {

/// Of the keyboard in use. This command links nothing that knows keyboards.
KeyNames currentKeyNames()
{
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle-notch"),
                  {QStringLiteral("--key-names")});
    program.waitForFinished();
    return decodedKeyNames(program.readAllStandardOutput());
}

std::optional<ShortcutAction> actionFrom(const Invocation &invocation)
{
    const QString &word = invocation.arguments.first();
    const auto action = shortcutActionFromRawValue(word);
    if (!action)
        fail(ExitStatus::WrongUsage, QStringLiteral("%1: there is no action %2; see ostrelle %1 --help")
                                         .arg(invocation.command->name, printable(word)));
    return action;
}

QJsonArray storedShortcuts()
{
    const KeyCombos combos = loadKeyCombos(DefaultsDatabase(AppPaths::defaultsFile()));
    const KeyNames names = currentKeyNames();
    QJsonArray records;
    for (const ShortcutAction action : kAllShortcutActions) {
        QJsonObject record = shortcutRecord(action, combos, names);
        record[u"state"] = QJsonValue(); // only the running program registers any
        records.append(record);
    }
    return records;
}

QString shortcutLines(const QJsonArray &records)
{
    qsizetype width = 0;
    for (const QJsonValue &record : records)
        width = std::max(width, record[u"action"].toString().size());
    QString text;
    for (const QJsonValue &record : records) {
        const QString combo = record[u"combo"].toString(QStringLiteral("not set"));
        const bool isRefused = record[u"state"].toString() == u"refused";
        text += QStringLiteral("%1  %2%3\n")
                    .arg(record[u"action"].toString().leftJustified(width), printable(combo),
                         isRefused ? QStringLiteral("  refused: another program may hold it") : QString());
    }
    return text;
}

ExitStatus store(DefaultsDatabase &database, ShortcutAction action, const std::optional<KeyCombo> &combo)
{
    muteStoreWarnings();
    storeKeyCombo(database, action, combo);
    return database.flush()
               ? ExitStatus::Done
               : fail(ExitStatus::Failed, QStringLiteral("shortcuts: cannot write %1").arg(AppPaths::defaultsFile()));
}

ExitStatus storeTyped(ShortcutAction action, const QString &text)
{
    DefaultsDatabase database(AppPaths::defaultsFile());
    const auto typed = keyComboFromText(text, currentKeyNames(), action, loadKeyCombos(database));
    if (const auto *problem = std::get_if<KeyComboProblem>(&typed))
        return fail(problem->kind == KeyComboProblem::Kind::Taken ? ExitStatus::Failed : ExitStatus::WrongUsage,
                    QStringLiteral("shortcuts: %1").arg(printable(problem->message)));
    return store(database, action, std::get<KeyCombo>(typed));
}

/// The running program's answer: a refusal is no failure of the command.
ExitStatus told(const ControlAnswer &answer)
{
    if (answer.status != ExitStatus::Done)
        return reported(answer);
    return answer.result[u"state"].toString() == u"refused"
               ? fail(ExitStatus::Done,
                      QStringLiteral("shortcuts: stored, but it does not work: another program may hold it"))
               : ExitStatus::Done;
}

} // namespace

ExitStatus runShortcutsList(const Invocation &invocation)
{
    return listRecords(invocation, QStringLiteral("shortcuts.list"), storedShortcuts, shortcutLines);
}

ExitStatus runShortcutsSet(const Invocation &invocation)
{
    const auto action = actionFrom(invocation);
    if (!action)
        return ExitStatus::WrongUsage;
    const QString &text = invocation.arguments.at(1);
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access))
        return told(client->ask(QStringLiteral("shortcuts.set"),
                                {{QStringLiteral("action"), rawValue(*action)}, {QStringLiteral("combo"), text}}));
    if (const auto *problem = std::get_if<QString>(&access))
        return fail(ExitStatus::Failed, *problem);
    return storeTyped(*action, text);
}

ExitStatus runShortcutsUnset(const Invocation &invocation)
{
    const auto action = actionFrom(invocation);
    if (!action)
        return ExitStatus::WrongUsage;
    return editStores(QStringLiteral("shortcuts.unset"), {{QStringLiteral("action"), rawValue(*action)}}, [&] {
        DefaultsDatabase database(AppPaths::defaultsFile());
        return store(database, *action, std::nullopt);
    });
}

} // namespace ostrelle
