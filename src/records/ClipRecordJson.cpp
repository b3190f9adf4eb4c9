#include "records/ClipRecordJson.h"

#include "records/RecordText.h"

#include <QJsonArray>

namespace ostrelle {

QJsonObject clipRecordJson(const ClipItem &item)
{
    QJsonObject record{{QStringLiteral("id"), QString::fromLatin1(uuidText(item.id))},
                       {QStringLiteral("kind"), rawValue(item.kind)},
                       {QStringLiteral("date"), item.date},
                       {QStringLiteral("pinned"), item.pinned}};
    if (item.text)
        record[QStringLiteral("text")] = *item.text;
    if (item.paths)
        record[QStringLiteral("paths")] = QJsonArray::fromStringList(*item.paths);
    if (item.image && !item.image->type.isEmpty())
        record[QStringLiteral("imageType")] = item.image->type;
    if (item.appName)
        record[QStringLiteral("appName")] = *item.appName;
    return record;
}

std::optional<ClipItem> clipItemFromRecordJson(const QJsonObject &record)
{
    const auto kind = clipKindFromRawValue(record[u"kind"].toString());
    if (!kind || !record[u"date"].isDouble() || !record[u"pinned"].isBool())
        return std::nullopt;
    ClipItem item;
    item.id = QUuid::fromString(record[u"id"].toString());
    item.kind = *kind;
    item.date = record[u"date"].toDouble();
    item.pinned = record[u"pinned"].toBool();
    if (record.contains(u"text"))
        item.text = record[u"text"].toString();
    if (record.contains(u"paths")) {
        item.paths.emplace();
        for (const QJsonValue path : record[u"paths"].toArray())
            item.paths->append(path.toString());
    }
    if (record.contains(u"imageType"))
        item.image = ClipImage{record[u"imageType"].toString(), 0, {}};
    if (record.contains(u"appName"))
        item.appName = record[u"appName"].toString();
    return item;
}

} // namespace ostrelle
