#pragma once

#include <QJsonObject>
#include <QString>

namespace ostrelle {

/// How much the command `forget` has erased.
struct Forgotten
{
    qsizetype clips = 0;
    qsizetype shelfItems = 0;
    qsizetype recentFiles = 0;
    qsizetype recentColors = 0;
    qsizetype favoriteColors = 0;

    QJsonObject toJson() const;
    static Forgotten fromJson(const QJsonObject &object);
    /// For a person at a terminal, in lines.
    QString text() const;

    friend bool operator==(const Forgotten &, const Forgotten &) = default;
};

/// Removes the files that could not be read and were kept aside, of the stores that `forget` empties; false when one is
/// left. Once the stores have been written anew, for who holds the lock of the data folder.
bool forgetUnreadable();

} // namespace ostrelle
