#include "command/ColorCommands.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "records/ColorLists.h"
#include "records/ColorText.h"

#include <QJsonArray>

namespace ostrelle {

namespace {

using ListsEdit = std::function<void(ColorLists &lists)>;

/// `verb` is that of the running program, "color.add".
ExitStatus editColors(const QString &verb, const QJsonObject &arguments, const ListsEdit &edit)
{
    return editDefaults(QStringLiteral("color"), verb, arguments, [&](DefaultsDatabase &defaults) {
        ColorLists lists = ColorLists::load(defaults);
        edit(lists);
        lists.store(defaults);
    });
}

/// The same with the colour that the command was given.
ExitStatus editColor(const Invocation &invocation, const QString &verb,
                     const std::function<void(ColorLists &lists, const SampledColor &color)> &edit)
{
    const QString &word = invocation.arguments.first();
    const auto color = colorFromText(word);
    if (!color)
        return fail(ExitStatus::WrongUsage, QStringLiteral("%1: %2 is no color; see ostrelle %1 --help")
                                                .arg(invocation.command->name, printable(word)));
    return editColors(verb, {{QStringLiteral("color"), word}}, [&](ColorLists &lists) { edit(lists, *color); });
}

/// A line for each colour, in the forms that the tool copies.
QString linesOf(const QString &kind, const QJsonArray &colors)
{
    QString text;
    for (const QJsonValue &value : colors) {
        if (const auto color = SampledColor::fromJson(value.toObject()))
            text += QStringLiteral("%1  %2  %3  %4\n")
                        .arg(kind.leftJustified(8), color->hexString(), color->rgbString().leftJustified(13),
                             color->hslString());
    }
    return text;
}

} // namespace

ExitStatus runColorList(const Invocation &invocation)
{
    QJsonObject lists;
    if (auto client = ControlClient::connect()) {
        const ControlAnswer answer = client->ask(QStringLiteral("color.list"));
        if (answer.status != ExitStatus::Done)
            return reported(answer);
        lists = answer.result.toObject();
    } else {
        lists = toJson(ColorLists::load(DefaultsDatabase(AppPaths::defaultsFile())));
    }
    if (invocation.json)
        printOut(compactJson(lists) + QLatin1Char('\n'));
    else
        printOut(linesOf(QStringLiteral("recent"), lists[u"recents"].toArray()) +
                 linesOf(QStringLiteral("favorite"), lists[u"favorites"].toArray()));
    return ExitStatus::Done;
}

ExitStatus runColorAdd(const Invocation &invocation)
{
    return editColor(invocation, QStringLiteral("color.add"), [](ColorLists &lists, const SampledColor &color) {
        lists.record(meantColor(lists.recents + lists.favorites, color));
    });
}

ExitStatus runColorFavorite(const Invocation &invocation)
{
    return editColor(invocation, QStringLiteral("color.favorite"), [](ColorLists &lists, const SampledColor &color) {
        lists.toggleFavorite(meantColor(lists.favorites + lists.recents, color));
    });
}

ExitStatus runColorClear(const Invocation &invocation)
{
    const bool isOfFavorites = invocation.options.contains(QStringLiteral("--favorites"));
    return editColors(
        QStringLiteral("color.clear"), {{QStringLiteral("favorites"), isOfFavorites}},
        [isOfFavorites](ColorLists &lists) { (isOfFavorites ? lists.favorites : lists.recents).clear(); });
}

} // namespace ostrelle
