#include "app/RequestedPaths.h"

#include <QJsonArray>

namespace ostrelle {

std::optional<QStringList> requestedPaths(const QJsonObject &request)
{
    QStringList paths;
    const QJsonArray values = request[u"paths"].toArray();
    for (const QJsonValue &value : values) {
        if (!value.toString().startsWith(QLatin1Char('/')))
            return std::nullopt;
        paths.append(value.toString());
    }
    return paths;
}

} // namespace ostrelle
