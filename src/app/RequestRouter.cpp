#include "app/RequestRouter.h"

#include <QJsonDocument>

namespace ostrelle {
namespace {

QByteArray lineOf(const RequestAnswer &answer)
{
    QJsonObject reply{{QStringLiteral("status"), static_cast<int>(answer.status)}};
    if (!answer.result.isUndefined())
        reply[QStringLiteral("result")] = answer.result;
    if (!answer.error.isEmpty())
        reply[QStringLiteral("error")] = answer.error;
    return QJsonDocument(reply).toJson(QJsonDocument::Compact);
}

} // namespace

void RequestRouter::add(const QString &verb, Handler handler)
{
    addLater(verb, [handler = std::move(handler)](const QJsonObject &request, const Reply &reply) {
        reply(handler(request));
    });
}

void RequestRouter::addLater(const QString &verb, LaterHandler handler)
{
    m_handlers.emplace(verb, std::move(handler));
}

void RequestRouter::answer(const QByteArray &request, const std::function<void(const QByteArray &line)> &send) const
{
    const QJsonObject object = QJsonDocument::fromJson(request).object();
    const QString verb = object[u"verb"].toString();
    const Reply reply = [send](const RequestAnswer &answer) { send(lineOf(answer)); };
    const auto handler = m_handlers.find(verb);
    if (handler != m_handlers.end())
        handler->second(object, reply);
    else
        reply(RequestAnswer::wrongUsage(
            QStringLiteral("the running program does not know \"%1\"; it may be another version").arg(verb)));
}

} // namespace ostrelle
