#include "CompletionPlaces.h"
#include "ShellCompletions.h"
#include "ShellWords.h"

namespace ostrelle {

namespace {

QString reply(const CompletionPlace &place)
{
    switch (place.kind) {
    case CompletionPlace::Kind::Files:
        return QStringLiteral("_files");
    case CompletionPlace::Kind::Folders:
        return QStringLiteral("_files -/");
    case CompletionPlace::Kind::Words:
        break;
    }
    QStringList words;
    for (const CompletionWord &word : place.words)
        words.append(inQuotes(word.meaning.isEmpty() ? word.word : word.word + u':' + word.meaning));
    return QStringLiteral("choices=(%1); _describe %2 choices")
        .arg(words.join(u' '), place.place == u"options" ? QStringLiteral("-o option") : QStringLiteral("word"));
}

} // namespace

QString zshCompletion()
{
    QString text = QStringLiteral("#compdef ostrelle\n"
                                  "# Completion of ostrelle for zsh, made from the table of its commands.\n"
                                  "_ostrelle() {\n"
                                  "  local -a choices\n") +
                   placeFinder(QStringLiteral("words"), QStringLiteral("2"), QStringLiteral("CURRENT")) +
                   QStringLiteral("  case \"$name:$place:$first\" in\n");
    for (const CompletionPlace &place : completionPlaces())
        text += QStringLiteral("    %1) %2 ;;\n").arg(casePattern(place), reply(place));
    return text + QStringLiteral("  esac\n}\n_ostrelle \"$@\"\n");
}

} // namespace ostrelle
