#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace ostrelle {

struct CommandSpec;

/// A word that may stand somewhere, and what it means; the meaning may be empty.
struct CompletionWord
{
    QString word;
    QString meaning;
};

/// What may stand at a place of a command line.
struct CompletionPlace
{
    enum class Kind { Words, Files, Folders };

    /// "1" and so on for arguments, "options" for any of them, "--size" for an option's value. Of a group without a
    /// command, the command is its place 1; the same for the program itself, whose name is empty.
    QString command;
    QString place;
    bool isRepeated = false; ///< it and every later argument
    Kind kind = Kind::Words;
    QList<CompletionWord> words;
    QString after; ///< only where this was the first argument
};

/// All places of the table of commands at which something can be said.
QList<CompletionPlace> completionPlaces();
/// "clipboard" and the like: names that stand before the name of a command.
QStringList commandGroups();
/// "inspect --jobs" and the like: options whose next word is their value.
QStringList optionsWithValue();

} // namespace ostrelle
