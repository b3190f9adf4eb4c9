#include "media_client/PngMarks.h"

#include <QtEndian>

#include <array>

#include <unistd.h>

namespace ostrelle {
namespace {

constexpr char kSignature[] = "\x89PNG\r\n\x1a\n";
constexpr qsizetype kSignatureSize = 8;
constexpr int kMostChunks = 256;
/// A path has at most 4096 bytes, each of which may take three in a URI.
constexpr quint32 kLongestText = 16 * 1024;

QByteArray readAt(int descriptor, qint64 offset, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    const ssize_t count = ::pread(descriptor, bytes.data(), static_cast<std::size_t>(size), offset);
    bytes.truncate(count > 0 ? count : 0);
    return bytes;
}

/// Bounded by how much zlib can make of kLongestText bytes, a thousand times as many.
QByteArray unpacked(const QByteArray &stream)
{
    // Qt wants a guess of the length before the stream.
    return qUncompress(QByteArray(4, '\0') + stream);
}

} // namespace

PngMarks readPngMarks(int descriptor, const QByteArrayList &keys)
{
    PngMarks marks;
    if (readAt(descriptor, 0, kSignatureSize) != QByteArrayView(kSignature, kSignatureSize))
        return marks;
    qint64 offset = kSignatureSize;
    for (int chunk = 0; chunk < kMostChunks && marks.size() < keys.size(); ++chunk) {
        const QByteArray header = readAt(descriptor, offset, 8);
        if (header.size() < 8 || header.endsWith("IEND"))
            break;
        const auto size = qFromBigEndian<quint32>(header.constData());
        const bool isPacked = header.endsWith("zTXt");
        if ((isPacked || header.endsWith("tEXt")) && size <= kLongestText) {
            const QByteArray text = readAt(descriptor, offset + 8, qsizetype(size));
            const qsizetype end = text.indexOf('\0');
            if (end > 0 && keys.contains(text.left(end)))
                marks.insert(text.left(end), isPacked ? unpacked(text.mid(end + 2)) : text.mid(end + 1));
        }
        offset += qint64(size) + 12;
    }
    return marks;
}

} // namespace ostrelle
