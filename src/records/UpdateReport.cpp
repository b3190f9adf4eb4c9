#include "records/UpdateReport.h"

#include "foundation/PrintableText.h"

namespace ostrelle {

bool UpdateReport::isFailure() const
{
    return state == u"failed";
}

QJsonObject UpdateReport::toJson() const
{
    QJsonObject object{{QStringLiteral("state"), state}};
    const auto add = [&object](const QString &key, const QString &text) {
        if (!text.isEmpty())
            object[key] = text;
    };
    add(QStringLiteral("version"), version);
    add(QStringLiteral("url"), url);
    add(QStringLiteral("notes"), notes);
    add(QStringLiteral("message"), message);
    return object;
}

UpdateReport UpdateReport::fromJson(const QJsonObject &object)
{
    return {object[u"state"].toString(), object[u"version"].toString(), object[u"url"].toString(),
            object[u"notes"].toString(), object[u"message"].toString()};
}

QString UpdateReport::text() const
{
    const auto line = [](const QString &text) { return printable(text) + QLatin1Char('\n'); };
    if (isFailure())
        return QStringLiteral("could not check for updates: ") + printable(message);
    if (version.isEmpty())
        return line(QStringLiteral("You're up to date"));
    return line(QStringLiteral("Version %1 is available").arg(version)) + (notes.isEmpty() ? QString() : line(notes)) +
           line(url);
}

} // namespace ostrelle
