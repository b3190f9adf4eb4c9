#include "command/StartProgram.h"

#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StoreAccess.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace ostrelle {

namespace {

ExitStatus handOver(ControlClient &client, const QString &tool)
{
    const ControlAnswer answer = client.ask(
        QStringLiteral("open"), tool.isEmpty() ? QJsonObject() : QJsonObject{{QStringLiteral("tool"), tool}});
    return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
}

/// `lockDescriptor` is -1 where the folder cannot be written: the program runs all the same and says so.
ExitStatus becomeProgram(int lockDescriptor, const QString &tool, bool openAtStart)
{
    const QByteArray program =
        QFile::encodeName(QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle-notch"));
    QByteArray lockArgument = "--lock-descriptor=" + QByteArray::number(lockDescriptor);
    QByteArray openArgument = "--open=" + tool.toUtf8();
    QByteArray name = program;
    char *arguments[] = {name.data(), lockArgument.data(), openAtStart ? openArgument.data() : nullptr, nullptr};
    ::execv(program.constData(), arguments);
    return fail(ExitStatus::Failed, QStringLiteral("cannot start %1: %2")
                                        .arg(QFile::decodeName(program), QString::fromLocal8Bit(std::strerror(errno))));
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

} // namespace ostrelle
