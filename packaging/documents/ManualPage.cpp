#include "ManualPage.h"

#include "command/CommandTable.h"
#include "command/Help.h"
#include "command/Output.h"
#include "records/SettingKeys.h"

#include <QLocale>
#include <QRegularExpression>
#include <QStringList>

namespace ostrelle {

namespace {

/// Text without anything that the language would take for its own.
QString plain(QString text)
{
    text.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    text.replace(u'"', QStringLiteral("\\(dq")).replace(u'…', QStringLiteral("..."));
    return text.startsWith(u'.') || text.startsWith(u'\'') ? QStringLiteral("\\&") + text : text;
}

/// A sentence a line, as the language wants it.
QString sentences(const QString &text)
{
    static const QRegularExpression kEnd(QStringLiteral(R"((?<=[.:;]) (?=\S))"));
    QString result;
    for (const QString &line : text.split(u'\n')) {
        for (const QString &sentence : line.split(kEnd))
            result += plain(sentence) + u'\n';
    }
    return result;
}

/// "--size N" or "FILE…" in the macros of the language.
QString wordsOfUsage(const QString &words)
{
    QStringList macros;
    for (QString word : words.split(u' ')) {
        const bool isRepeated = word.endsWith(u'…');
        if (word.startsWith(u'-'))
            macros << QStringLiteral("Fl ") + plain(word.mid(1));
        else
            macros << QStringLiteral("Ar ") + plain(word.remove(u'…')).replace(u'|', QStringLiteral(" | "));
        if (isRepeated)
            macros << QStringLiteral("...");
    }
    return macros.join(u' ');
}

/// Everything of usageOf() after the command's name.
QString usage(const CommandSpec &command)
{
    static const QRegularExpression kPart(QStringLiteral(R"(\[([^\]]+)\]|(--?\S+ [A-Z]\S*)|(\S+))"));
    QString result;
    auto part = kPart.globalMatch(usageOf(command).mid(command.name.size() + 1));
    while (part.hasNext()) {
        const auto match = part.next();
        const QString optional = match.captured(1);
        result += optional.isEmpty() ? u' ' + wordsOfUsage(match.captured(0))
                                     : QStringLiteral(" Oo ") + wordsOfUsage(optional) + QStringLiteral(" Oc");
    }
    return result;
}

QString commands()
{
    QString text = QStringLiteral(".Sh COMMANDS\n.Bl -tag -width Ds\n");
    for (const CommandSpec &command : allCommands()) {
        text += QStringLiteral(".It Ic ") + plain(command.name) + usage(command) + u'\n';
        text += plain(command.summary) + QStringLiteral(".\n") +
                (command.details.isEmpty() ? QString() : sentences(command.details));
    }
    return text + QStringLiteral(".El\n");
}

QString settings()
{
    QString text = QStringLiteral(".Sh SETTINGS\nThe keys of\n.Ic settings set :\n.Bl -tag -width Ds\n");
    for (const SettingKey &key : allSettingKeys()) {
        text += QStringLiteral(".It Cm ") + plain(key.key.toString()) + u'\n';
        text += plain(key.help) + QStringLiteral(".\n");
        if (!key.allowed.isEmpty())
            text += QStringLiteral("Values: ") + plain(key.allowed.join(QStringLiteral(", "))) + QStringLiteral(".\n");
        text += QStringLiteral("By default ") + plain(compactJson(key.fallback)) + QStringLiteral(".\n");
    }
    return text + QStringLiteral(".El\n");
}

const char *const kStart = R"(.Dt OSTRELLE 1
.Os %1
.Sh NAME
.Nm ostrelle
.Nd six small tools, just above your work
.Sh SYNOPSIS
.Nm
.Op Ar command Op Ar argument ...
.Nm
.Ar command
.Fl -help
.Nm
.Fl -version
.Sh DESCRIPTION
A black lozenge at the top centre of the screen opens into a panel with a clipboard history, a color sampler, a shelf for
files, project folders, and inspectors for images and sound.
.Pp
Without a command,
.Nm
opens the notch, and starts the program when it is not running.
With one, it speaks to the running program; where none runs, commands on the stored lists and the settings work on their
files.
)";

const char *const kEnd = R"(.Sh ENVIRONMENT
.Bl -tag -width Ds
.It Ev QT_LOGGING_RULES
Which messages are written.
.Dq ostrelle.*=true
stands for all of them,
.Dq ostrelle.clipboard=true
for those of one part.
What was copied never appears in them.
.It Ev XDG_CONFIG_HOME , XDG_DATA_HOME
Where the files below lie, else
.Pa ~/.config
and
.Pa ~/.local/share .
.El
.Sh FILES
.Bl -tag -width Ds
.It Pa ~/.config/Ostrelle/defaults.json
The settings, and the recent colors and files.
.It Pa ~/.local/share/Ostrelle/clipboard.json
The clipboard history.
While a large one changes,
.Pa clipboard.journal
lies beside it.
.It Pa ~/.local/share/Ostrelle/shelf.json , Pa projects.json
The shelf and the project folders.
.El
.Sh EXIT STATUS
0 when it is done, 1 when it failed, 2 for wrong usage, 3 when the program is not running.
.Sh EXAMPLES
The clipboard tool:
.Dl $ ostrelle open clipboard
.Pp
What the pictures below a folder are, for another program:
.Dl $ ostrelle inspect \-\-json \-\-recursive Pictures
.Pp
Hovering no longer opens the notch:
.Dl $ ostrelle settings set general.hoverOpenDelay 0
)";

} // namespace

QString manualPage(const QDate &date)
{
    const QString day = QLocale::c().toString(date, QStringLiteral("MMMM d, yyyy"));
    return QStringLiteral(".Dd ") + day + u'\n' + QString::fromUtf8(kStart).arg(versionText()) + commands() +
           settings() + QString::fromUtf8(kEnd);
}

} // namespace ostrelle
