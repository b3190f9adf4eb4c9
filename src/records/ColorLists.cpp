#include "records/ColorLists.h"

#include "foundation/DefaultsDatabase.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

QString recentsKey()
{
    return QStringLiteral("color.recents");
}

QString favoritesKey()
{
    return QStringLiteral("color.favorites");
}

QList<SampledColor> loadColors(const DefaultsDatabase &defaults, const QString &key, qsizetype most)
{
    const std::optional<QByteArray> data = defaults.data(key);
    const auto stored = data ? decodedColors(*data) : std::nullopt;
    QList<SampledColor> colors;
    // A list put together by hand may be longer or repeat a colour.
    for (const SampledColor &color : stored.value_or(QList<SampledColor>())) {
        if (colors.size() < most && !colors.contains(color))
            colors.append(color);
    }
    return colors;
}

void storeColors(DefaultsDatabase &defaults, const QString &key, const QList<SampledColor> &colors)
{
    if (const auto encoded = encodedColors(colors))
        defaults.setData(key, *encoded);
    else
        defaults.remove(key);
}

void prepend(QList<SampledColor> &colors, const SampledColor &color, qsizetype most)
{
    colors.prepend(color);
    if (colors.size() > most)
        colors.resize(most);
}

QJsonArray described(const QList<SampledColor> &colors)
{
    QJsonArray array;
    for (const SampledColor &color : colors) {
        QJsonObject object = toJson(color);
        object[QStringLiteral("hex")] = color.hexString();
        array.append(object);
    }
    return array;
}

} // namespace

void ColorLists::record(const SampledColor &color)
{
    recents.removeAll(color);
    prepend(recents, color, kMostRecents);
}

void ColorLists::toggleFavorite(const SampledColor &color)
{
    if (!favorites.removeOne(color))
        prepend(favorites, color, kMostFavorites);
}

ColorLists ColorLists::load(const DefaultsDatabase &defaults)
{
    return {loadColors(defaults, recentsKey(), kMostRecents), loadColors(defaults, favoritesKey(), kMostFavorites)};
}

void ColorLists::store(DefaultsDatabase &defaults) const
{
    storeColors(defaults, recentsKey(), recents);
    storeColors(defaults, favoritesKey(), favorites);
}

QJsonObject toJson(const ColorLists &lists)
{
    return {{QStringLiteral("recents"), described(lists.recents)},
            {QStringLiteral("favorites"), described(lists.favorites)}};
}

SampledColor meantColor(const QList<SampledColor> &colors, const SampledColor &color)
{
    const auto found = std::find_if(colors.begin(), colors.end(),
                                    [id = color.id()](const SampledColor &other) { return other.id() == id; });
    return found == colors.end() ? color : *found;
}

std::optional<QByteArray> encodedColors(const QList<SampledColor> &colors)
{
    QJsonArray array;
    for (const SampledColor &color : colors) {
        const std::array components{color.r, color.g, color.b};
        if (!std::all_of(components.begin(), components.end(), [](double value) { return std::isfinite(value); }))
            return std::nullopt;
        array.append(toJson(color));
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<SampledColor>> decodedColors(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<SampledColor> colors;
    const QJsonArray array = document.array();
    for (const QJsonValue &element : array) {
        const std::optional<SampledColor> color = SampledColor::fromJson(element.toObject());
        if (!color)
            return std::nullopt;
        colors.append(*color);
    }
    return colors;
}

} // namespace ostrelle
