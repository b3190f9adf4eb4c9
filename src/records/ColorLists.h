#pragma once

#include "records/SampledColor.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <optional>

namespace ostrelle {

class DefaultsDatabase;

/// The colours that are kept, no colour twice in a list. The running program and the commands that edit the lists by
/// themselves share this.
struct ColorLists
{
    static constexpr qsizetype kMostRecents = 18;
    static constexpr qsizetype kMostFavorites = 24;

    QList<SampledColor> recents;   ///< the newest first
    QList<SampledColor> favorites; ///< the one starred last first

    /// Puts the colour at the head of the recent ones; the oldest one goes when there are too many.
    void record(const SampledColor &color);
    /// Removes the favorite, or adds it at the head; the oldest one goes when there are too many.
    void toggleFavorite(const SampledColor &color);

    /// From the database. A list that is missing or cannot be decoded is empty.
    static ColorLists load(const DefaultsDatabase &defaults);
    /// Under the keys "color.recents" and "color.favorites"; a list that cannot be encoded is removed.
    void store(DefaultsDatabase &defaults) const;

    friend bool operator==(const ColorLists &, const ColorLists &) = default;
};

/// As commands tell them: {"recents": [...], "favorites": [...]}, of each colour its components and "hex".
QJsonObject toJson(const ColorLists &lists);

/// What somebody means who writes down `color`: the first of `colors` that looks the same, whose components may lie
/// between two steps of 255, or `color` itself.
SampledColor meantColor(const QList<SampledColor> &colors, const SampledColor &color);

/// A compact JSON array, an object per colour in list order; nothing when a component is not finite.
std::optional<QByteArray> encodedColors(const QList<SampledColor> &colors);
/// The inverse; nothing when one element is malformed.
std::optional<QList<SampledColor>> decodedColors(const QByteArray &json);

} // namespace ostrelle
