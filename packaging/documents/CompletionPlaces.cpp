#include "CompletionPlaces.h"

#include "command/CommandTable.h"
#include "records/KestroModule.h"
#include "records/SettingKeys.h"
#include "records/ShortcutAction.h"

#include <algorithm>

namespace ostrelle {

namespace {

using Kind = CompletionPlace::Kind;

QString withoutBrackets(const QString &text)
{
    return text.startsWith(u'[') ? text.mid(1, text.size() - 2) : text;
}

QString groupOf(const CommandSpec &command)
{
    return command.name.contains(u' ') ? command.name.section(u' ', 0, 0) : QString();
}

QList<CompletionWord> plainWords(const QStringList &words)
{
    QList<CompletionWord> result;
    for (const QString &word : words)
        result.append({word, {}});
    return result;
}

QList<CompletionWord> settingKeys()
{
    QList<CompletionWord> words;
    for (const SettingKey &key : allSettingKeys())
        words.append({key.key.toString(), key.help});
    return words;
}

QList<CompletionWord> tools()
{
    QList<CompletionWord> words;
    for (const KestroModule module : kAllModules)
        words.append({rawValue(module), title(module)});
    return words;
}

QList<CompletionWord> shortcutActions()
{
    QList<CompletionWord> words;
    for (const ShortcutAction action : kAllShortcutActions)
        words.append({rawValue(action), title(action)});
    return words;
}

/// What a placeholder of the table stands for; no words where only the user can know.
void describe(const QString &placeholder, CompletionPlace &place)
{
    if (placeholder == u"TOOL")
        place.words = tools();
    else if (placeholder == u"KEY")
        place.words = settingKeys();
    else if (placeholder == u"ACTION")
        place.words = shortcutActions();
    else if (placeholder == u"FORMAT")
        place.words =
            plainWords({QStringLiteral("hex"), QStringLiteral("rgb"), QStringLiteral("hsl"), QStringLiteral("json")});
    else if (placeholder.startsWith(u"FILE"))
        place.kind = Kind::Files;
    else if (placeholder == u"FOLDER")
        place.kind = Kind::Folders;
    else if (placeholder.contains(u'|'))
        place.words = plainWords(placeholder.split(u'|'));
}

bool saysSomething(const CompletionPlace &place)
{
    return place.kind != Kind::Words || !place.words.isEmpty();
}

/// The values of each setting that has a few.
QList<CompletionPlace> valuePlaces(const QString &command, const QString &place)
{
    QList<CompletionPlace> places;
    for (const SettingKey &key : allSettingKeys()) {
        QStringList values;
        if (key.type == SettingType::Boolean)
            values = QStringList{QStringLiteral("true"), QStringLiteral("false")};
        else if (key.type == SettingType::String)
            values = key.allowed;
        if (!values.isEmpty())
            places.append({command, place, false, Kind::Words, plainWords(values), key.key.toString()});
    }
    return places;
}

QList<CompletionPlace> argumentPlaces(const CommandSpec &command)
{
    QList<CompletionPlace> places;
    int number = 0;
    for (const QString &argument : command.arguments.split(u' ', Qt::SkipEmptyParts)) {
        const QString at = QString::number(++number);
        QString placeholder = withoutBrackets(argument);
        if (placeholder == u"VALUE") {
            places += valuePlaces(command.name, at);
            continue;
        }
        CompletionPlace place{command.name, at, placeholder.endsWith(u'…'), Kind::Words, {}, {}};
        describe(placeholder.remove(u'…'), place);
        if (saysSomething(place))
            places.append(place);
    }
    return places;
}

QList<CompletionPlace> optionPlaces(const CommandSpec &command)
{
    CompletionPlace names{command.name, QStringLiteral("options"), false, Kind::Words, {}, {}};
    QList<CompletionPlace> places;
    if (command.takesJson)
        names.words.append({QStringLiteral("--json"), QStringLiteral("For programs, as JSON")});
    for (const QString &option : command.options) {
        const QString text = withoutBrackets(option);
        const QString name = text.section(u' ', 0, 0);
        names.words.append({name, {}});
        CompletionPlace value{command.name, name, false, Kind::Words, {}, {}};
        describe(text.section(u' ', 1), value);
        if (saysSomething(value))
            places.append(value);
    }
    names.words.append({QStringLiteral("--help"), QStringLiteral("Tell more about it")});
    places.append(names);
    return places;
}

CompletionPlace commandsOf(const QString &group)
{
    CompletionPlace place{group, QStringLiteral("1"), false, Kind::Words, {}, {}};
    for (const CommandSpec &command : allCommands()) {
        if (groupOf(command) == group)
            place.words.append({command.name.section(u' ', -1), command.summary});
    }
    return place;
}

/// The commands that need no group, and the groups, which are told by what is in them.
CompletionPlace firstWords()
{
    CompletionPlace place = commandsOf({});
    for (const QString &group : commandGroups()) {
        const auto isGroup = [&](const CompletionWord &word) { return word.word == group; };
        if (std::ranges::any_of(place.words, isGroup))
            continue;
        QStringList names;
        for (const CompletionWord &word : commandsOf(group).words)
            names.append(word.word);
        place.words.append({group, names.join(QStringLiteral(", "))});
    }
    return place;
}

} // namespace

QStringList commandGroups()
{
    QStringList groups;
    for (const CommandSpec &command : allCommands()) {
        const QString group = groupOf(command);
        if (!group.isEmpty() && !groups.contains(group))
            groups.append(group);
    }
    return groups;
}

QStringList optionsWithValue()
{
    QStringList options;
    for (const CommandSpec &command : allCommands()) {
        for (const QString &option : command.options) {
            if (option.contains(u' '))
                options.append(command.name + u' ' + withoutBrackets(option).section(u' ', 0, 0));
        }
    }
    return options;
}

QList<CompletionPlace> completionPlaces()
{
    QList<CompletionPlace> places{firstWords()};
    places.append({{},
                   QStringLiteral("options"),
                   false,
                   Kind::Words,
                   {{QStringLiteral("--help"), QStringLiteral("List the commands")},
                    {QStringLiteral("--version"), QStringLiteral("Name the version")}},
                   {}});
    for (const QString &group : commandGroups())
        places.append(commandsOf(group));
    for (const CommandSpec &command : allCommands())
        places += argumentPlaces(command) + optionPlaces(command);
    return places;
}

} // namespace ostrelle
