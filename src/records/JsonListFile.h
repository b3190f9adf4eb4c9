#pragma once

#include "foundation/SnapshotFile.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <functional>

namespace ostrelle {

/// The file of a JsonListStore, for records of any type: one compact JSON array of objects.
class JsonListFile
{
public:
    JsonListFile(const QString &path, const QString &what);

    /// Gives `take` the objects in order until it refuses one; false when the file is undecodable, which is logged.
    bool load(const std::function<bool(const QJsonObject &record)> &take);
    /// `encode` runs on the writer's thread.
    void save(std::function<QJsonArray()> encode);
    void observeSaving(std::function<void(bool isFailing)> observer);
    void retry();
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);
    bool flush();

private:
    QString m_what;
    SnapshotFile m_file;
};

} // namespace ostrelle
