#pragma once

#include "platform/ClipboardPort.h"

#include <QByteArrayList>

#include <limits>

namespace ostrelle {

/// The desktop's names for kinds of clipboard content, and their encodings. Pure; any thread.
namespace clipboardTypes {

inline constexpr char kPasswordHint[] = "x-kde-passwordManagerHint";
inline constexpr char kConcealedMarker[] = "org.nspasteboard.ConcealedType";

/// What an owner with these types can be read as.
QList<ClipboardFormat> formatsOf(const QByteArrayList &types);

/// How the bytes of one type are to be understood.
enum class Encoding {
    Raw,
    UriList,         ///< text/uri-list (RFC 2483)
    CopiedFiles,     ///< a line "copy" or "cut", then one URI per line
    FileTransferKey, ///< a key of the FileTransfer portal
    MozillaUrl,      ///< text/x-moz-url: UTF-16 in this machine's order, a line with a URL, one with its title, …
    Utf8,
    UnknownText, ///< text/plain without charset: Unicode where it is valid, else Latin-1
    Latin1
};

struct Candidate
{
    QByteArray type; ///< as the owner spells it
    Encoding encoding = Encoding::Raw;
};

/// The types to ask for, best first.
QList<Candidate> candidatesFor(ClipboardFormat format, const QByteArrayList &types);

/// Text of the owner's bytes; trailing NUL bytes and a byte order mark are left out, invalid parts replaced.
QString decodeText(const QByteArray &bytes, Encoding encoding);

/// Absolute local paths of a list of URIs, in order. Other schemes, other hosts, and names that are not UTF-8 are left
/// out. No more than `limit`; what follows is not looked at.
QStringList decodeFiles(const QByteArray &bytes, Encoding encoding,
                        qsizetype limit = std::numeric_limits<qsizetype>::max());

/// Whether the content of the password hint asks for silence.
bool isSecret(const QByteArray &hint);

} // namespace clipboardTypes

} // namespace ostrelle
