#pragma once

#include "foundation/FileDescriptor.h"
#include "records/StoredClip.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

namespace ostrelle {

/// A new file that takes another one's place in one step, or disappears without a trace. Bytes of other files are
/// copied inside the kernel where it can. The first failure sticks: replace() reports it.
class ClipOutput
{
public:
    /// Begins the successor of `path` beside it, with mode 0600.
    explicit ClipOutput(const QString &path);
    ~ClipOutput();
    ClipOutput(const ClipOutput &) = delete;
    ClipOutput &operator=(const ClipOutput &) = delete;

    /// Where the next byte will lie.
    qint64 position() const { return m_written + m_buffer.size(); }
    void append(QByteArrayView bytes);
    void copy(const FileDescriptor &from, ByteSpan span);

    /// Writes out what is buffered and syncs.
    bool finish();
    /// After finish(): renames over `path` and syncs the folder. False with isInPlace(): it has taken the place, but
    /// may lose it again in a power cut.
    bool replace();
    bool isInPlace() const { return m_temporaryPath.isEmpty() && *m_file; }

    /// The reason of the first failure.
    const QString &failure() const { return m_failure; }
    /// The written file, open for reading.
    std::shared_ptr<const FileDescriptor> file() const { return m_file; }

private:
    void writeBuffer();
    void write(const char *bytes, qsizetype length);
    void copyInKernel(const FileDescriptor &from, ByteSpan &span);
    void copyThroughMemory(const FileDescriptor &from, ByteSpan span);
    bool check(bool succeeded, const char *what);

    QByteArray m_path;
    QByteArray m_temporaryPath;
    std::shared_ptr<const FileDescriptor> m_file;
    QByteArray m_buffer;
    qint64 m_written = 0;
    QString m_failure;
};

/// Reads exactly `span`; nothing when the file ends before or cannot be read.
std::optional<QByteArray> readSpan(const FileDescriptor &file, ByteSpan span);
/// Makes the names in `folder` durable. False with errno.
bool syncFolder(const QByteArray &folder);
/// Writes at a place of a file. False with errno; the bytes before `offset` are untouched in any case.
bool writeAt(const FileDescriptor &file, qint64 offset, QByteArrayView bytes);

} // namespace ostrelle
