#include "records/ClipOutput.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace ostrelle {
namespace {

constexpr qsizetype kBufferSize = 256 * 1024;
// Below this a read into the buffer costs less than the system calls around a copy in the kernel.
constexpr qint64 kCopiedInKernel = 64 * 1024;

/// pread() until `length` bytes are there; false at an early end or an error (errno 0 or set).
bool readFully(int descriptor, char *into, qint64 length, qint64 offset)
{
    errno = 0;
    while (length > 0) {
        const ssize_t got = ::pread(descriptor, into, static_cast<std::size_t>(length), offset);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        into += got;
        offset += got;
        length -= got;
    }
    return true;
}

} // namespace

ClipOutput::ClipOutput(const QString &path)
    : m_path(QFile::encodeName(path))
    , m_temporaryPath(QFile::encodeName(QFileInfo(path).path() + QStringLiteral("/.") + QFileInfo(path).fileName()) +
                      ".XXXXXX")
    , m_file(std::make_shared<const FileDescriptor>(::mkostemp(m_temporaryPath.data(), O_CLOEXEC)))
{
    if (!check(static_cast<bool>(*m_file), "cannot create a file"))
        m_temporaryPath.clear();
}

ClipOutput::~ClipOutput()
{
    if (!m_temporaryPath.isEmpty())
        ::unlink(m_temporaryPath.constData());
}

void ClipOutput::append(QByteArrayView bytes)
{
    if (m_buffer.size() + bytes.size() > kBufferSize)
        writeBuffer();
    if (bytes.size() > kBufferSize)
        write(bytes.data(), bytes.size());
    else
        m_buffer.append(bytes.data(), bytes.size());
}

void ClipOutput::copy(const FileDescriptor &from, ByteSpan span)
{
    if (span.length >= kCopiedInKernel) {
        writeBuffer();
        copyInKernel(from, span);
    }
    // What the kernel did not copy, be it another file system or an old kernel: reading and writing gives the true
    // error.
    copyThroughMemory(from, span);
}

void ClipOutput::copyInKernel(const FileDescriptor &from, ByteSpan &span)
{
    while (m_failure.isEmpty() && span.length > 0) {
        off64_t source = span.offset;
        const ssize_t copied =
            ::copy_file_range(from.get(), &source, m_file->get(), nullptr, static_cast<std::size_t>(span.length), 0);
        if (copied < 0 && errno == EINTR)
            continue;
        if (copied <= 0)
            return;
        m_written += copied;
        span = {span.offset + copied, span.length - copied};
    }
}

void ClipOutput::copyThroughMemory(const FileDescriptor &from, ByteSpan span)
{
    while (m_failure.isEmpty() && span.length > 0) {
        if (m_buffer.size() == kBufferSize)
            writeBuffer();
        const qsizetype kept = m_buffer.size();
        const qsizetype part = std::min<qsizetype>(kBufferSize - kept, span.length);
        m_buffer.resize(kept + part);
        if (!check(readFully(from.get(), m_buffer.data() + kept, part, span.offset), "cannot read a stored record"))
            return;
        span = {span.offset + part, span.length - part};
    }
}

void ClipOutput::writeBuffer()
{
    write(m_buffer.constData(), m_buffer.size());
    m_buffer.resize(0);
}

void ClipOutput::write(const char *bytes, qsizetype length)
{
    while (m_failure.isEmpty() && length > 0) {
        const ssize_t written = ::write(m_file->get(), bytes, static_cast<std::size_t>(length));
        if (written < 0 && errno == EINTR)
            continue;
        if (!check(written > 0, "cannot write"))
            return;
        bytes += written;
        length -= written;
        m_written += written;
    }
}

bool ClipOutput::finish()
{
    writeBuffer();
    m_buffer = QByteArray();
    return m_failure.isEmpty() && check(::fsync(m_file->get()) == 0, "cannot sync");
}

bool ClipOutput::replace()
{
    if (!check(::rename(m_temporaryPath.constData(), m_path.constData()) == 0, "cannot replace the file"))
        return false;
    m_temporaryPath.clear();
    return check(syncFolder(m_path.left(m_path.lastIndexOf('/'))), "cannot sync the folder");
}

bool ClipOutput::check(bool succeeded, const char *what)
{
    if (!succeeded && m_failure.isEmpty())
        m_failure = QLatin1String(what) + QStringLiteral(": ") + qt_error_string(errno);
    return succeeded;
}

std::optional<QByteArray> readSpan(const FileDescriptor &file, ByteSpan span)
{
    QByteArray bytes(span.length, Qt::Uninitialized);
    if (!readFully(file.get(), bytes.data(), span.length, span.offset))
        return std::nullopt;
    return bytes;
}

bool syncFolder(const QByteArray &folder)
{
    const FileDescriptor descriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // EINVAL: a file system whose folders cannot be synced.
    return descriptor && (::fsync(descriptor.get()) == 0 || errno == EINVAL);
}

bool writeAt(const FileDescriptor &file, qint64 offset, QByteArrayView bytes)
{
    const char *from = bytes.data();
    qsizetype length = bytes.size();
    while (length > 0) {
        const ssize_t written = ::pwrite(file.get(), from, static_cast<std::size_t>(length), offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        from += written;
        offset += written;
        length -= written;
    }
    return true;
}

} // namespace ostrelle
