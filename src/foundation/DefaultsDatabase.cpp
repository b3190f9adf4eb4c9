#include "foundation/DefaultsDatabase.h"

#include "foundation/AppPaths.h"
#include "foundation/AtomicFile.h"
#include "foundation/SerialQueue.h"
#include "foundation/Unwritable.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QObject>

#include <mutex>
#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcFoundation, "ostrelle.foundation", QtInfoMsg)

constexpr QLatin1StringView kDataTag("$data");

/// The stored object; empty when there is no file, nothing when it cannot be read or decoded.
std::optional<QJsonObject> readObject(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QJsonObject();
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}

} // namespace

/// Writes the newest snapshot on the queue's thread.
struct DefaultsDatabase::Writer
{
    explicit Writer(QString filePath)
        : path(std::move(filePath))
    {
    }

    void post(const QJsonObject &snapshot);
    bool flush();
    bool hasFailed();

    void writeNewest();
    std::optional<QString> write(const QByteArray &bytes);
    void report(bool isFailing);

    const QString path;
    bool keepOldAside = false; ///< set before the first job, then the queue's thread only
    bool isFirstWrite = true;  ///< the queue's thread only

    std::mutex mutex; ///< guards the next two
    std::optional<QJsonObject> newest;
    QString failure; ///< of the last write; empty when it succeeded

    QObject answers; ///< carries reports to its thread, the main one
    std::function<void(bool)> observer;

    SerialQueue queue; ///< last: its end waits for the jobs, which use the rest
};

void DefaultsDatabase::Writer::post(const QJsonObject &snapshot)
{
    const std::lock_guard lock(mutex);
    if (!std::exchange(newest, snapshot))
        queue.post([this] { writeNewest(); });
}

bool DefaultsDatabase::Writer::flush()
{
    queue.drain();
    return !hasFailed();
}

bool DefaultsDatabase::Writer::hasFailed()
{
    const std::lock_guard lock(mutex);
    return !failure.isEmpty();
}

void DefaultsDatabase::Writer::writeNewest()
{
    QJsonObject snapshot;
    {
        const std::lock_guard lock(mutex);
        snapshot = *std::exchange(newest, std::nullopt);
    }
    const QString result = write(QJsonDocument(snapshot).toJson()).value_or(QString());
    const std::lock_guard lock(mutex);
    if (result.isEmpty() != failure.isEmpty())
        report(!result.isEmpty());
    if (!result.isEmpty() && result != failure && !reportUnwritable(QFileInfo(path).absolutePath()))
        qCWarning(lcFoundation).noquote() << "The settings could not be saved:" << result;
    failure = result;
}

void DefaultsDatabase::Writer::report(bool isFailing)
{
    QMetaObject::invokeMethod(
        &answers,
        [this, isFailing] {
            if (observer)
                observer(isFailing);
        },
        Qt::QueuedConnection);
}

std::optional<QString> DefaultsDatabase::Writer::write(const QByteArray &bytes)
{
    if (!AppPaths::ensurePrivateFolder(QFileInfo(path).absolutePath()))
        return QStringLiteral("cannot create their folder");
    if (std::exchange(isFirstWrite, false))
        removeUnfinishedWrites(path);
    if (keepOldAside) {
        if (!setAsideUnreadable(path))
            return QStringLiteral("cannot keep the unreadable file aside");
        keepOldAside = false;
    }
    return writeFileAtomically(path, bytes);
}

DefaultsDatabase::DefaultsDatabase(const QString &path)
    : m_writer(std::make_unique<Writer>(path))
{
    const std::optional<QJsonObject> stored = readObject(path);
    m_writer->keepOldAside = !stored;
    if (stored)
        m_values = *stored;
    else
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
    m_writer->observer = std::move(observer);
}

void DefaultsDatabase::retry()
{
    save();
}

bool DefaultsDatabase::flush()
{
    if (m_writer->flush())
        return true;
    save();
    return m_writer->flush();
}

void DefaultsDatabase::save()
{
    m_writer->post(m_values);
}

} // namespace ostrelle
