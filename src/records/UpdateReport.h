#pragma once

#include <QJsonObject>
#include <QString>

namespace ostrelle {

/// What a check for updates came to, as the command `update check` tells it.
struct UpdateReport
{
    QString state;   ///< "current", "available" or "failed"
    QString version; ///< of the release that is available, as `url` and `notes`; else empty
    QString url;
    QString notes;
    QString message; ///< why it failed; else empty

    bool isFailure() const;
    /// What is empty is left out.
    QJsonObject toJson() const;
    static UpdateReport fromJson(const QJsonObject &object);
    /// For a person at a terminal: lines on standard output or, of a failure, the end of one on standard error.
    QString text() const;
};

} // namespace ostrelle
