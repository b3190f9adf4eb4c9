#include "command/StartProgram.h"

#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StoreAccess.h"

#include <QCoreApplication>
#include <QFile>
#include <QList>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include <unistd.h>

namespace ostrelle {

namespace {

ExitStatus handOver(ControlClient &client, const QString &verb, const QJsonObject &arguments)
{
    const ControlAnswer answer = client.ask(verb, arguments);
    return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
}

ExitStatus execute(QByteArrayList arguments)
{
    arguments.prepend(QFile::encodeName(QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle-notch")));
    const QByteArray program = arguments.constFirst();
    std::vector<char *> pointers;
    for (QByteArray &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    ::execv(program.constData(), pointers.data());
    return fail(ExitStatus::Failed, QStringLiteral("cannot start %1: %2")
                                        .arg(QFile::decodeName(program), QString::fromLocal8Bit(std::strerror(errno))));
}

/// `lockDescriptor` is -1 where the folder cannot be written: the program runs all the same and says so.
ExitStatus becomeProgram(int lockDescriptor, const QByteArrayList &more)
{
    return execute(QByteArrayList{"--lock-descriptor=" + QByteArray::number(lockDescriptor)} + more);
}

/// Asks the running program, or becomes it with these arguments.
ExitStatus askOrBecome(const QString &verb, const QJsonObject &request, const QByteArrayList &arguments)
{
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access))
        return handOver(*client, verb, request);
    if (auto *lock = std::get_if<DataFolderLock>(&access))
        return becomeProgram(lock->passOn(), arguments);
    return becomeProgram(-1, arguments);
}

} // namespace

ExitStatus openOrBecome(const QString &tool, bool openAtStart)
{
    const QJsonObject request = tool.isEmpty() ? QJsonObject() : QJsonObject{{QStringLiteral("tool"), tool}};
    return askOrBecome(QStringLiteral("open"), request,
                       openAtStart ? QByteArrayList{"--open=" + tool.toUtf8()} : QByteArrayList());
}

ExitStatus openSettingsOrBecome(const QString &section)
{
    return askOrBecome(QStringLiteral("settings.open"), {{QStringLiteral("section"), section}},
                       {"--settings=" + section.toUtf8()});
}

ExitStatus openWelcomeOrBecome()
{
    return askOrBecome(QStringLiteral("welcome"), {}, {"--welcome"});
}

ExitStatus becomeOneShot(const QByteArrayList &arguments)
{
    return execute(arguments);
}

} // namespace ostrelle
