#include "foundation/DefaultsDatabase.h"

#include <QJsonDocument>
#include <QLoggingCategory>

#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcFoundation, "ostrelle.foundation", QtInfoMsg)

constexpr QLatin1StringView kDataTag("$data");

} // namespace

DefaultsDatabase::DefaultsDatabase(const QString &path)
    : m_file(path, QStringLiteral("The settings"))
{
    const bool isGood = m_file.load([this](const QByteArray &bytes) {
        const QJsonDocument document = QJsonDocument::fromJson(bytes);
        m_values = document.object();
        return document.isObject();
    });
    if (!isGood)
        qCWarning(lcFoundation) << "The settings could not be read; the defaults are used";
}

DefaultsDatabase::~DefaultsDatabase() = default;

std::optional<QJsonValue> DefaultsDatabase::value(const QString &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.constEnd())
        return std::nullopt;
    return QJsonValue(found.value());
}

void DefaultsDatabase::setValue(const QString &key, const QJsonValue &value)
{
    m_values.insert(key, value);
    save();
}

void DefaultsDatabase::remove(const QString &key)
{
    if (!m_values.contains(key))
        return;
    m_values.remove(key);
    save();
}

std::optional<QByteArray> DefaultsDatabase::data(const QString &key) const
{
    const QJsonValue tagged = m_values.value(key).toObject().value(kDataTag);
    if (!tagged.isString())
        return std::nullopt;
    auto decoded =
        QByteArray::fromBase64Encoding(tagged.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return std::move(*decoded);
}

void DefaultsDatabase::setData(const QString &key, const QByteArray &bytes)
{
    setValue(key, QJsonObject{{QString(kDataTag), QString::fromLatin1(bytes.toBase64())}});
}

void DefaultsDatabase::observeSaving(std::function<void(bool)> observer)
{
    m_file.observeSaving(std::move(observer));
}

void DefaultsDatabase::retry()
{
    m_file.retry();
}

void DefaultsDatabase::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    m_file.whenSaved(context, std::move(answer));
}

bool DefaultsDatabase::flush()
{
    return m_file.flush();
}

void DefaultsDatabase::save()
{
    m_file.save([snapshot = m_values] { return QJsonDocument(snapshot).toJson(); });
}

} // namespace ostrelle
