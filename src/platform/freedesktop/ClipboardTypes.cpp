#include "platform/freedesktop/ClipboardTypes.h"

#include <QStringDecoder>
#include <QSysInfo>

#include <algorithm>
#include <array>

namespace ostrelle::clipboardTypes {

namespace {

struct KnownType
{
    const char *name; ///< lower case, without blanks
    ClipboardFormat format;
    Encoding encoding;
};

/// Best first within a format. A file transfer key comes last: resolving it starts a portal, and the plain lists are
/// right for all but closed sandboxes.
constexpr std::array kKnownTypes{
    KnownType{"text/uri-list", ClipboardFormat::Files, Encoding::UriList},
    KnownType{"x-special/gnome-copied-files", ClipboardFormat::Files, Encoding::CopiedFiles},
    KnownType{"application/vnd.portal.filetransfer", ClipboardFormat::Files, Encoding::FileTransferKey},
    KnownType{"application/vnd.portal.files", ClipboardFormat::Files, Encoding::FileTransferKey},
    KnownType{"image/png", ClipboardFormat::Png, Encoding::Raw},
    KnownType{"image/tiff", ClipboardFormat::Tiff, Encoding::Raw},
    KnownType{"utf8_string", ClipboardFormat::Text, Encoding::Utf8},
    KnownType{"text/plain;charset=utf-8", ClipboardFormat::Text, Encoding::Utf8},
    KnownType{"text/plain", ClipboardFormat::Text, Encoding::UnknownText},
    KnownType{"string", ClipboardFormat::Text, Encoding::Latin1},
    KnownType{"image/jpeg", ClipboardFormat::Jpeg, Encoding::Raw},
    KnownType{"image/bmp", ClipboardFormat::Bmp, Encoding::Raw},
    KnownType{"image/x-bmp", ClipboardFormat::Bmp, Encoding::Raw},
    KnownType{"image/x-ms-bmp", ClipboardFormat::Bmp, Encoding::Raw},
    KnownType{"image/webp", ClipboardFormat::WebP, Encoding::Raw},
};

QByteArray normalised(QByteArray type)
{
    type = type.toLower();
    type.removeIf([](char c) { return c == ' '; });
    return type;
}

QString decodeUtf16(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf16); // takes the byte order from the mark
    return decoder(bytes);
}

bool hasUtf16Mark(const QByteArray &bytes)
{
    return bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
}

QByteArray urlsWithoutTitles(const QByteArray &bytes)
{
    const QStringList lines = decodeUtf16(bytes).split(u'\n');
    QByteArray urls;
    for (qsizetype i = 0; i < lines.size(); i += 2) {
        urls += lines[i].toUtf8() + '\n';
    }
    return urls;
}

/// RFC 8089: file:/path, file:///path, file://localhost/path.
std::optional<QString> localPath(QByteArray uri)
{
    if (uri.left(5).compare("file:", Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    uri.remove(0, 5);
    if (uri.startsWith("//")) {
        const qsizetype slash = uri.indexOf('/', 2);
        if (slash < 0) {
            return std::nullopt;
        }
        const QByteArray host = uri.sliced(2, slash - 2).toLower();
        if (!host.isEmpty() && host != "localhost" && host != QSysInfo::machineHostName().toUtf8().toLower()) {
            return std::nullopt;
        }
        uri.remove(0, slash);
    }
    const QByteArray path = QByteArray::fromPercentEncoding(uri);
    if (!path.startsWith('/') || path.contains('\0') || !QUtf8StringView(path).isValidUtf8()) {
        return std::nullopt;
    }
    return QString::fromUtf8(path);
}

} // namespace

QList<ClipboardFormat> formatsOf(const QByteArrayList &types)
{
    QList<ClipboardFormat> formats;
    for (const KnownType &known : kKnownTypes) {
        const bool isOffered =
            std::any_of(types.begin(), types.end(), [&](const QByteArray &t) { return normalised(t) == known.name; });
        if (isOffered && !formats.contains(known.format)) {
            formats << known.format;
        }
    }
    return formats;
}

QList<Candidate> candidatesFor(ClipboardFormat format, const QByteArrayList &types)
{
    QList<Candidate> candidates;
    for (const KnownType &known : kKnownTypes) {
        if (known.format != format) {
            continue;
        }
        const auto offered =
            std::find_if(types.begin(), types.end(), [&](const QByteArray &t) { return normalised(t) == known.name; });
        if (offered != types.end()) {
            candidates << Candidate{*offered, known.encoding};
        }
    }
    return candidates;
}

QString decodeText(const QByteArray &bytes, Encoding encoding)
{
    QByteArray content = bytes;
    if (encoding == Encoding::Latin1) {
        while (content.endsWith('\0')) {
            content.chop(1);
        }
        return QString::fromLatin1(content);
    }
    if (hasUtf16Mark(content)) { // neither byte can begin valid UTF-8
        return decodeUtf16(content);
    }
    while (content.endsWith('\0')) {
        content.chop(1);
    }
    if (encoding == Encoding::UnknownText && !QUtf8StringView(content).isValidUtf8()) {
        return QString::fromLatin1(content);
    }
    QStringDecoder decoder(QStringDecoder::Utf8); // drops a byte order mark
    return decoder(content);
}

QStringList decodeFiles(const QByteArray &bytes, Encoding encoding, qsizetype limit)
{
    if (encoding == Encoding::MozillaUrl) {
        return decodeFiles(urlsWithoutTitles(bytes), Encoding::UriList, limit);
    }
    QStringList paths;
    for (qsizetype start = 0, end = 0; start < bytes.size() && paths.size() < limit; start = end + 1) {
        end = bytes.indexOf('\n', start);
        end = end < 0 ? bytes.size() : end;
        QByteArray line = bytes.sliced(start, end - start).trimmed();
        while (line.endsWith('\0')) {
            line.chop(1);
        }
        const bool isVerb = start == 0 && encoding == Encoding::CopiedFiles;
        if (isVerb || line.isEmpty() || line.startsWith('#')) {
            continue;
        }
        if (const std::optional<QString> path = localPath(line)) {
            paths << *path;
        }
    }
    return paths;
}

bool isSecret(const QByteArray &hint)
{
    return hint.left(6) == "secret";
}

} // namespace ostrelle::clipboardTypes
