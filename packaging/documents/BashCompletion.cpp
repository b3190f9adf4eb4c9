#include "CompletionPlaces.h"
#include "ShellCompletions.h"
#include "ShellWords.h"

namespace ostrelle {

namespace {

QString reply(const CompletionPlace &place)
{
    switch (place.kind) {
    case CompletionPlace::Kind::Files:
        return QStringLiteral("compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$current\")");
    case CompletionPlace::Kind::Folders:
        return QStringLiteral("compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$current\")");
    case CompletionPlace::Kind::Words:
        break;
    }
    QStringList words;
    for (const CompletionWord &word : place.words)
        words.append(word.word);
    return QStringLiteral("mapfile -t COMPREPLY < <(compgen -W %1 -- \"$current\")").arg(inQuotes(words.join(u' ')));
}

} // namespace

QString bashCompletion()
{
    QString text = QStringLiteral("# Completion of ostrelle for bash, made from the table of its commands.\n"
                                  "_ostrelle() {\n"
                                  "  local current=${COMP_WORDS[COMP_CWORD]}\n") +
                   placeFinder(QStringLiteral("COMP_WORDS"), QStringLiteral("1"), QStringLiteral("COMP_CWORD")) +
                   QStringLiteral("  COMPREPLY=()\n"
                                  "  case \"$name:$place:$first\" in\n");
    for (const CompletionPlace &place : completionPlaces())
        text += QStringLiteral("    %1) %2 ;;\n").arg(casePattern(place), reply(place));
    return text + QStringLiteral("  esac\n}\ncomplete -F _ostrelle ostrelle\n");
}

} // namespace ostrelle
