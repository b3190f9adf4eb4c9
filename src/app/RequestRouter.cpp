#include "app/RequestRouter.h"

#include <QJsonDocument>

namespace ostrelle {

void RequestRouter::add(const QString &verb, Handler handler)
{
    m_handlers.emplace(verb, std::move(handler));
}

QByteArray RequestRouter::answer(const QByteArray &request) const
{
    const QJsonObject object = QJsonDocument::fromJson(request).object();
    const QString verb = object[u"verb"].toString();
    const auto handler = m_handlers.find(verb);
    const RequestAnswer answer =
        handler == m_handlers.end()
            ? RequestAnswer::wrongUsage(QStringLiteral("the running program does not know \"%1\"; "
                                                       "it may be another version")
                                            .arg(verb))
            : handler->second(object);
    QJsonObject reply{{QStringLiteral("status"), static_cast<int>(answer.status)}};
    if (!answer.result.isUndefined())
        reply[QStringLiteral("result")] = answer.result;
    if (!answer.error.isEmpty())
        reply[QStringLiteral("error")] = answer.error;
    return QJsonDocument(reply).toJson(QJsonDocument::Compact);
}

} // namespace ostrelle
