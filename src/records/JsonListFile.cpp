#include "records/JsonListFile.h"

#include <QJsonDocument>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcLists, "ostrelle.records", QtInfoMsg)

} // namespace

JsonListFile::JsonListFile(const QString &path, const QString &what)
    : m_what(what)
    , m_file(path, what)
{
}

bool JsonListFile::load(const std::function<bool(const QJsonObject &)> &take)
{
    const bool isGood = m_file.load([&](const QByteArray &bytes) {
        const QJsonDocument document = QJsonDocument::fromJson(bytes);
        const QJsonArray records = document.array();
        return document.isArray() && std::all_of(records.begin(), records.end(),
                                                 [&](const QJsonValue &record) { return take(record.toObject()); });
    });
    if (!isGood)
        qCWarning(lcLists).noquote() << m_what << "could not be read and starts empty; its file is kept";
    return isGood;
}

void JsonListFile::save(std::function<QJsonArray()> encode)
{
    m_file.save([encode = std::move(encode)] { return QJsonDocument(encode()).toJson(QJsonDocument::Compact); });
}

void JsonListFile::observeSaving(std::function<void(bool)> observer)
{
    m_file.observeSaving(std::move(observer));
}

void JsonListFile::retry()
{
    m_file.retry();
}

void JsonListFile::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    m_file.whenSaved(context, std::move(answer));
}

bool JsonListFile::flush()
{
    return m_file.flush();
}

} // namespace ostrelle
