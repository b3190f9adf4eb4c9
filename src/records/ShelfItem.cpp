#include "records/ShelfItem.h"

#include "records/RecordText.h"

namespace ostrelle {

std::optional<ShelfItem> ShelfItem::fromJson(const QJsonObject &record)
{
    const auto id = uuidFromText(record[u"id"].toString().toLatin1());
    if (!id || !record[u"path"].isString() || !record[u"addedAt"].isDouble())
        return std::nullopt;
    return ShelfItem{*id, record[u"path"].toString(), record[u"addedAt"].toDouble()};
}

QJsonObject toJson(const ShelfItem &item)
{
    return {{QStringLiteral("id"), QString::fromLatin1(uuidText(item.id))},
            {QStringLiteral("path"), item.path},
            {QStringLiteral("addedAt"), item.addedAt}};
}

} // namespace ostrelle
