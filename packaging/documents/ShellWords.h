#pragma once

#include <QString>
#include <QStringList>

namespace ostrelle {

struct CompletionPlace;

/// `text` as one word of any of the shells.
QString inQuotes(const QString &text);
/// Each of `texts`, in quotes, with bars between: alternatives of a case.
QString alternatives(const QStringList &texts);
/// The case of bash and zsh that "name:place:first argument" falls into at the place.
QString casePattern(const CompletionPlace &place);
/// The part that bash and zsh have in common: finds `name`, `place` and `first` from the words before the cursor.
/// `words` is the shell's list of them, `begin` and `end` the indices of the first argument and of the cursor.
QString placeFinder(const QString &words, const QString &begin, const QString &end);

} // namespace ostrelle
