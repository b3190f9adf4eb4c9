#include "command/FileName.h"

#include <QStringDecoder>

namespace ostrelle {
namespace {

constexpr char16_t kEscape = 0xdc00;

/// `bytes` decoded, with `replace` for each byte that is not UTF-8.
template <typename Replace>
QString decoded(const QByteArray &bytes, Replace replace)
{
    QString text;
    qsizetype at = 0;
    while (at < bytes.size()) {
        // The longest part from here on that is sound: nearly always all of it.
        QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString rest = decode(QByteArrayView(bytes).sliced(at));
        if (!decode.hasError())
            return text + rest;
        const qsizetype sound = rest.indexOf(QChar::ReplacementCharacter);
        const QString part = rest.left(sound);
        text += part;
        at += part.toUtf8().size();
        // A replacement character that really stands in the name.
        static const QByteArray kReplacement = QString(QChar(QChar::ReplacementCharacter)).toUtf8();
        if (QByteArrayView(bytes).sliced(at).startsWith(kReplacement)) {
            text += QChar(QChar::ReplacementCharacter);
            at += kReplacement.size();
        } else {
            text += replace(static_cast<unsigned char>(bytes[at]));
            ++at;
        }
    }
    return text;
}

} // namespace

QString wordOfBytes(const QByteArray &bytes)
{
    return decoded(bytes, [](unsigned char byte) { return QString(QChar(char16_t(kEscape + byte))); });
}

QByteArray bytesOfWord(const QString &word)
{
    QByteArray bytes;
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= word.size(); ++i) {
        const bool isEnd = i == word.size();
        const bool isEscape = !isEnd && word[i].isLowSurrogate() && (i == 0 || !word[i - 1].isHighSurrogate());
        if (!isEnd && !isEscape)
            continue;
        bytes += QStringView(word).sliced(begin, i - begin).toUtf8();
        if (isEscape)
            bytes += static_cast<char>(word[i].unicode() - kEscape);
        begin = i + 1;
    }
    return bytes;
}

bool isText(const QByteArray &name)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(name);
    return !decode.hasError() && !text.isNull();
}

QString displayName(const QByteArray &name)
{
    return decoded(name, [](unsigned char byte) {
        return QStringLiteral("%%1").arg(uint(byte), 2, 16, QLatin1Char('0')).toUpper();
    });
}

} // namespace ostrelle
