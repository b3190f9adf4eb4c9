#include "command/Output.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace ostrelle {

void printOut(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

ExitStatus fail(ExitStatus status, const QString &message)
{
    std::fprintf(stderr, "ostrelle: %s\n", message.toUtf8().constData());
    return status;
}

QString compactJson(const QJsonValue &value)
{
    // QJsonDocument knows only arrays and objects: write [value] and take the brackets off.
    const QByteArray bytes = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(bytes.mid(1, bytes.size() - 2));
}

} // namespace ostrelle
