#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringView>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// One entry of the shelf: a reference to a file or folder, never a copy of it.
struct ShelfItem
{
    QUuid id;
    QString path;       ///< absolute and standardised
    double addedAt = 0; ///< seconds since 2001-01-01 00:00:00 UTC

    static constexpr QStringView kFileName = u"shelf.json";
    static constexpr QStringView kListName = u"The shelf"; ///< in log lines

    /// The inverse of toJson(); nothing when a key is missing or wrong.
    static std::optional<ShelfItem> fromJson(const QJsonObject &record);

    friend bool operator==(const ShelfItem &, const ShelfItem &) = default;
};

/// As it is stored.
QJsonObject toJson(const ShelfItem &item);

} // namespace ostrelle
