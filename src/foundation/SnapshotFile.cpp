#include "foundation/SnapshotFile.h"

#include "foundation/AppPaths.h"
#include "foundation/AtomicFile.h"
#include "foundation/SerialQueue.h"
#include "foundation/Unwritable.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>

#include <mutex>
#include <optional>
#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcSnapshot, "ostrelle.foundation", QtInfoMsg)

} // namespace

struct SnapshotFile::Writer
{
    Writer(QString filePath, QString content)
        : path(std::move(filePath))
        , what(std::move(content))
    {
    }

    void post(Encode encode);
    void retry();
    bool isSaved();

    void writeNewest();
    void report(bool isFailing);
    void tellSaved(const QPointer<const QObject> &context, const std::function<void(bool)> &answer);
    std::optional<QString> write(const QByteArray &bytes);

    const QString path;
    const QString what;
    bool keepOldAside = false; ///< set before the first job, then the queue's thread only
    bool isFirstWrite = true;  ///< the queue's thread only

    std::mutex mutex; ///< guards the next three
    Encode newest;    ///< not on the disk yet
    bool isPosted = false;
    QString failure; ///< of the last write; empty when it succeeded

    QObject answers; ///< carries reports to its thread, the main one
    std::function<void(bool)> observer;

    SerialQueue queue; ///< last: its end waits for the jobs, which use the rest
};

void SnapshotFile::Writer::post(Encode encode)
{
    const std::lock_guard lock(mutex);
    newest = std::move(encode);
    if (!std::exchange(isPosted, true))
        queue.post([this] { writeNewest(); });
}

void SnapshotFile::Writer::retry()
{
    const std::lock_guard lock(mutex);
    if (newest && !std::exchange(isPosted, true))
        queue.post([this] { writeNewest(); });
}

bool SnapshotFile::Writer::isSaved()
{
    const std::lock_guard lock(mutex);
    return !newest;
}

void SnapshotFile::Writer::writeNewest()
{
    Encode encode;
    {
        const std::lock_guard lock(mutex);
        isPosted = false;
        encode = std::exchange(newest, nullptr);
    }
    const QString result = write(encode()).value_or(QString());
    const std::lock_guard lock(mutex);
    if (result.isEmpty() != failure.isEmpty())
        report(!result.isEmpty());
    if (!result.isEmpty() && result != failure && !reportUnwritable(QFileInfo(path).absolutePath()))
        qCWarning(lcSnapshot).noquote() << what << "could not be saved:" << result;
    failure = result;
    if (!result.isEmpty() && !newest)
        newest = std::move(encode);
}

/// In the queue after the write that it is about; what has come since does not count.
void SnapshotFile::Writer::tellSaved(const QPointer<const QObject> &context, const std::function<void(bool)> &answer)
{
    const std::lock_guard lock(mutex);
    QMetaObject::invokeMethod(
        &answers,
        [isSaved = failure.isEmpty(), context, answer] {
            if (context)
                answer(isSaved);
        },
        Qt::QueuedConnection);
}

void SnapshotFile::Writer::report(bool isFailing)
{
    QMetaObject::invokeMethod(
        &answers,
        [this, isFailing] {
            if (observer)
                observer(isFailing);
        },
        Qt::QueuedConnection);
}

std::optional<QString> SnapshotFile::Writer::write(const QByteArray &bytes)
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

SnapshotFile::SnapshotFile(const QString &path, const QString &what)
    : m_writer(std::make_unique<Writer>(path, what))
{
}

SnapshotFile::~SnapshotFile() = default;

bool SnapshotFile::load(const std::function<bool(const QByteArray &)> &decode)
{
    QFile file(m_writer->path);
    if (!file.exists())
        return true;
    const bool makesSense = file.open(QIODevice::ReadOnly) && decode(file.readAll());
    m_writer->keepOldAside = !makesSense;
    return makesSense;
}

void SnapshotFile::save(Encode encode)
{
    m_writer->post(std::move(encode));
}

void SnapshotFile::observeSaving(std::function<void(bool)> observer)
{
    m_writer->observer = std::move(observer);
}

void SnapshotFile::retry()
{
    m_writer->retry();
}

void SnapshotFile::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    retry();
    m_writer->queue.post([writer = m_writer.get(), guard = QPointer(context), answer = std::move(answer)] {
        writer->tellSaved(guard, answer);
    });
}

bool SnapshotFile::flush()
{
    m_writer->queue.drain();
    retry();
    m_writer->queue.drain();
    return m_writer->isSaved();
}

} // namespace ostrelle
