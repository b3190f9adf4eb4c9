#include "records/RecentFile.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ostrelle {

std::optional<RecentFile> RecentFile::fromJson(const QJsonObject &record)
{
    if (!record[u"path"].isString() || !record[u"name"].isString() || !record[u"summary"].isString() ||
        !record[u"date"].isDouble())
        return std::nullopt;
    return RecentFile{record[u"path"].toString(), record[u"name"].toString(), record[u"summary"].toString(),
                      record[u"date"].toDouble()};
}

QJsonObject toJson(const RecentFile &file)
{
    return {{QStringLiteral("path"), file.path},
            {QStringLiteral("name"), file.name},
            {QStringLiteral("summary"), file.summary},
            {QStringLiteral("date"), file.date}};
}

QByteArray encodedRecentFiles(const QList<RecentFile> &files)
{
    QJsonArray array;
    for (const RecentFile &file : files)
        array.append(toJson(file));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<RecentFile>> decodedRecentFiles(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<RecentFile> files;
    const QJsonArray array = document.array();
    for (const QJsonValue &element : array) {
        const std::optional<RecentFile> file = RecentFile::fromJson(element.toObject());
        if (!file)
            return std::nullopt;
        files.append(*file);
    }
    return files;
}

} // namespace ostrelle
