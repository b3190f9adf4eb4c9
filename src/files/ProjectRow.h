#pragma once

#include <QMetaType>
#include <QString>
#include <QUuid>

namespace ostrelle {

/// What a row of the projects shows.
struct ProjectRow
{
    QUuid id;
    QString name;
    QString parent; ///< the folder above, "~" standing for the user's home
    bool isMissing = false;

    /// Where the folder is, or that it is missing.
    QString secondLine() const;
};

/// The path of the folder above `path`, with "~" for `home` at its beginning. Both absolute and standardised.
QString shownParent(const QString &path, const QString &home);

} // namespace ostrelle

Q_DECLARE_METATYPE(ostrelle::ProjectRow)
