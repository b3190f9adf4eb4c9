#pragma once

#include <QByteArray>
#include <QString>

namespace ostrelle {

// The names of files are bytes on this platform, mostly but not always UTF-8.

/// Any bytes as text, reversibly: each byte that is not UTF-8 becomes the lone surrogate U+DC00 plus its value.
QString wordOfBytes(const QByteArray &bytes);
/// The inverse of wordOfBytes().
QByteArray bytesOfWord(const QString &word);
/// Whether it is UTF-8, so that Qt finds the file by it.
bool isText(const QByteArray &name);
/// The name for people and for JSON: bytes that are not UTF-8 percent-encoded.
QString displayName(const QByteArray &name);

} // namespace ostrelle
