#include "CompletionPlaces.h"
#include "ShellCompletions.h"
#include "ShellWords.h"

namespace ostrelle {

namespace {

/// Fish takes backslashes in single quotes for its own.
QString quotedForFish(QString text)
{
    return u'\'' + text.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'")) + u'\'';
}

QString quotedList(const QStringList &texts)
{
    QStringList quoted;
    for (const QString &text : texts)
        quoted.append(quotedForFish(text));
    return quoted.join(u' ');
}

QString condition(const CompletionPlace &place)
{
    const QString at = place.isRepeated ? place.place + u'+' : place.place;
    return QStringLiteral("-n '__ostrelle_is_at \"%1\" %2%3'")
        .arg(place.command, at, place.after.isEmpty() ? QString() : u' ' + place.after);
}

QString lines(const CompletionPlace &place)
{
    const QString start = QStringLiteral("complete -c ostrelle ") + condition(place);
    switch (place.kind) {
    case CompletionPlace::Kind::Files:
        return start + QStringLiteral(" -F\n");
    case CompletionPlace::Kind::Folders:
        return start + QStringLiteral(" -a '(__fish_complete_directories)'\n");
    case CompletionPlace::Kind::Words:
        break;
    }
    QString text;
    for (const CompletionWord &word : place.words) {
        text += start + QStringLiteral(" -a ") + quotedForFish(word.word);
        if (!word.meaning.isEmpty())
            text += QStringLiteral(" -d ") + quotedForFish(word.meaning);
        text += u'\n';
    }
    return text;
}

} // namespace

QString fishCompletion()
{
    QString text = QStringLiteral(R"(# Completion of ostrelle for fish, made from the table of its commands.
function __ostrelle_is_at --argument-names command at after
    set -l name ''
    set -l first ''
    set -l place ''
    set -l count 0
    set -l words (commandline -opc)
    for word in $words[2..]
        if test -n "$place"
            set place ''
        else if string match -q -- '-*' $word
            contains -- "$name $word" %1; and set place $word
        else if test -z "$name"
            set name $word
        else if contains -- $name %2
            set name "$name $word"
        else
            set count (math $count + 1)
            test $count = 1; and set first $word
        end
    end
    if test -z "$place"
        if string match -q -- '-*' (commandline -ct)
            set place options
        else
            set place (math $count + 1)
        end
    end
    test "$name" = "$command"; or return 1
    test -z "$after" -o "$first" = "$after"; or return 1
    test "$place" = "$at"; and return 0
    string match -q -- '*+' $at; and string match -qr -- '^[0-9]+$' $place
    and test $place -ge (string trim -r -c + -- $at)
end

complete -c ostrelle -f
)")
                       .arg(quotedList(optionsWithValue()), quotedList(commandGroups()));
    for (const CompletionPlace &place : completionPlaces())
        text += lines(place);
    return text;
}

} // namespace ostrelle
