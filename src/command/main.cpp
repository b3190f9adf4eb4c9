#include "command/CommandLine.h"
#include "command/FileName.h"
#include "command/Help.h"
#include "command/HelperAhead.h"
#include "command/Output.h"
#include "foundation/CoreDumps.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QStringList>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace ostrelle;

ExitStatus run(const ParsedCommandLine &parsed)
{
    if (const auto *invocation = std::get_if<Invocation>(&parsed))
        return invocation->command->run(*invocation);
    if (const auto *help = std::get_if<HelpRequest>(&parsed)) {
        printOut(helpText(help->topic));
        return ExitStatus::Done;
    }
    if (const auto *problem = std::get_if<UsageProblem>(&parsed))
        return fail(ExitStatus::WrongUsage, problem->message);
    printOut(versionText() + QLatin1Char('\n'));
    return ExitStatus::Done;
}

/// A standard descriptor that was closed by who started this would be given to the next file or socket that is opened,
/// which would then be printed into. It cannot be read or written in its place, either.
void keepStandardDescriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        // The lowest one that is free, so this one.
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", mode) < 0)
            std::_Exit(static_cast<int>(ExitStatus::Failed));
    }
}

} // namespace

int main(int argc, char **argv)
{
    keepStandardDescriptors();
    forbidCoreDumps();
    std::setlocale(LC_ALL, "");
    // A write beyond a file-size limit then fails as on a full disk. No handler is passed on to another program.
    std::signal(SIGXFSZ, [](int) {});
    if (!qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN"))
        qSetMessagePattern(QStringLiteral("ostrelle: %{message}"));
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(wordOfBytes(QByteArray(argv[i])));
    startHelperAhead(words);
    const QCoreApplication application(argc, argv);
    ExitStatus status = run(parseCommandLine(words));
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        status = fail(ExitStatus::Failed, QStringLiteral("cannot write the output"));
    return static_cast<int>(status);
}
