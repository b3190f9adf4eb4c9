#pragma once

#include <QImage>
#include <QMetaType>
#include <QString>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// What is shown of a recent file.
struct RecentEntry
{
    QUuid id; ///< stands for the path
    QString path;
    QString name;
    QString summary;
    QImage thumbnail = {}; ///< null: a symbol instead
    bool isMissing = false;
    bool isPlayable = false; ///< there, and of a kind that is played in place
    bool isPlaying = false;
    std::optional<double> progress = {}; ///< of playing, 0 to 1

    /// The summary, or that the file is missing.
    QString secondText() const { return isMissing ? QStringLiteral("Missing") : summary; }
    /// All of it in words.
    QString description() const;
};

} // namespace ostrelle

Q_DECLARE_METATYPE(ostrelle::RecentEntry)
