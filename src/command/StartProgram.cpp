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

ExitStatus handOver(ControlClient &client, const QString &tool)
{
    const ControlAnswer answer = client.ask(
        QStringLiteral("open"), tool.isEmpty() ? QJsonObject() : QJsonObject{{QStringLiteral("tool"), tool}});
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
ExitStatus becomeProgram(int lockDescriptor, const QString &tool, bool openAtStart)
{
    QByteArrayList arguments{"--lock-descriptor=" + QByteArray::number(lockDescriptor)};
    if (openAtStart)
        arguments << "--open=" + tool.toUtf8();
    return execute(std::move(arguments));
}

} // namespace

ExitStatus openOrBecome(const QString &tool, bool openAtStart)
{
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access))
        return handOver(*client, tool);
    if (auto *lock = std::get_if<DataFolderLock>(&access))
        return becomeProgram(lock->passOn(), tool, openAtStart);
    return becomeProgram(-1, tool, openAtStart);
}

ExitStatus becomeOneShot(const QByteArrayList &arguments)
{
    return execute(arguments);
}

} // namespace ostrelle
