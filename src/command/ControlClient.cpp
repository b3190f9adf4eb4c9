#include "command/ControlClient.h"

#include "foundation/AppPaths.h"
#include "foundation/UnixSocket.h"

#include <QJsonDocument>

namespace ostrelle {

namespace {

using namespace std::chrono_literals;

// An erasure is acknowledged when it has left the disk, which for a large history means rewriting it.
constexpr auto kAnswerDeadline = 30s;
constexpr auto kUserDeadline = 24h * 20; // poll() counts to 24 days
constexpr auto kQuitDeadline = 15s;
constexpr qsizetype kAnswerCap = 256 * 1024 * 1024;

ControlAnswer failed(const QString &reason)
{
    return {ExitStatus::Failed, {}, reason};
}

} // namespace

ControlClient::ControlClient(FileDescriptor descriptor)
    : m_descriptor(std::move(descriptor))
{
}

std::optional<ControlClient> ControlClient::connect()
{
    FileDescriptor descriptor = UnixSocket::connectTo(AppPaths::controlSocket());
    if (!descriptor || !UnixSocket::isSameUser(descriptor.get()))
        return std::nullopt;
    return ControlClient(std::move(descriptor));
}

ControlAnswer ControlClient::ask(const QString &verb, QJsonObject arguments, Patience patience)
{
    arguments[QStringLiteral("verb")] = verb;
    const QByteArray request = QJsonDocument(arguments).toJson(QJsonDocument::Compact);
    if (!UnixSocket::sendLine(m_descriptor.get(), request, kAnswerDeadline))
        return failed(QStringLiteral("the running program does not listen"));
    const std::chrono::milliseconds deadline = patience == Patience::ForTheUser ? kUserDeadline : kAnswerDeadline;
    const auto line = UnixSocket::receiveLine(m_descriptor.get(), deadline, kAnswerCap);
    if (!line)
        return failed(QStringLiteral("the running program did not answer"));
    const QJsonObject answer = QJsonDocument::fromJson(*line).object();
    const int status = answer[u"status"].toInt(static_cast<int>(ExitStatus::Failed));
    return {static_cast<ExitStatus>(status), answer[u"result"], answer[u"error"].toString()};
}

bool ControlClient::waitForEnd()
{
    return UnixSocket::waitForEnd(m_descriptor.get(), kQuitDeadline);
}

} // namespace ostrelle
