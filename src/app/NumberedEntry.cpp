#include "app/NumberedEntry.h"

namespace ostrelle {

RequestAnswer onNumberedEntry(const QString &tool, qsizetype count, const QJsonObject &request,
                              const std::function<void(int)> &act)
{
    const int number = request[u"number"].toInt();
    if (number < 1)
        return RequestAnswer::wrongUsage(QStringLiteral("%1: N is a number from 1").arg(tool));
    if (number > count)
        return RequestAnswer::failed(QStringLiteral("%1: there is no entry %2").arg(tool).arg(number));
    act(number - 1);
    return RequestAnswer::done();
}

} // namespace ostrelle
