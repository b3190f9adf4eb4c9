#include "records/ClipCodec.h"

#include "records/RecordText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

namespace ostrelle {
namespace {

void appendEscaped(QByteArray &out, unsigned char character)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    switch (character) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        out += "\\u00";
        out += kDigits[character >> 4];
        out += kDigits[character & 0xf];
    }
}

/// The inside of a JSON string. Half a surrogate pair becomes a question mark: no parser takes it back.
QByteArray escaped(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    QByteArray out;
    out.reserve(utf8.size() + utf8.size() / 16);
    qsizetype copied = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto character = static_cast<unsigned char>(utf8[i]);
        if (character >= 0x20 && character != '"' && character != '\\')
            continue;
        out.append(utf8.constData() + copied, i - copied);
        appendEscaped(out, character);
        copied = i + 1;
    }
    return out.append(utf8.constData() + copied, utf8.size() - copied);
}

void appendMember(QByteArray &out, const char *key, const std::optional<QString> &text)
{
    if (text)
        out += ",\"" + QByteArray(key) + "\":\"" + escaped(*text) + '"';
}

void appendPaths(QByteArray &out, const QStringList &paths)
{
    out += ",\"paths\":[";
    for (qsizetype i = 0; i < paths.size(); ++i)
        out += (i > 0 ? ",\"" : "\"") + escaped(paths[i]) + '"';
    out += ']';
}

} // namespace

ClipFrame clipFrame(const ClipItem &item, bool hasImageData)
{
    ClipFrame frame;
    QByteArray *out = &frame.before;
    *out = "{\"id\":\"" + uuidText(item.id) + "\",\"kind\":\"" + rawValue(item.kind).toLatin1() + '"';
    if (item.text && !hasImageData) {
        *out += ",\"text\":\"";
        out = &frame.after;
        *out += '"';
    } else {
        appendMember(*out, "text", item.text);
    }
    if (item.paths)
        appendPaths(*out, *item.paths);
    if (hasImageData) {
        *out += ",\"imageData\":\"";
        out = &frame.after;
        *out += '"';
    }
    if (item.image && !item.image->type.isEmpty())
        appendMember(*out, "imageType", item.image->type);
    *out += ",\"date\":" + dateText(item.date) + ",\"pinned\":" + (item.pinned ? "true" : "false");
    appendMember(*out, "appName", item.appName);
    *out += '}';
    return frame;
}

QByteArray encodedValue(const ClipItem &item, const QByteArray &image)
{
    if (item.kind == ClipItem::Kind::Image)
        return image.toBase64();
    return item.text ? escaped(*item.text) : QByteArray();
}

QByteArray unescapedBase64(const QByteArray &value)
{
    const QJsonDocument document = QJsonDocument::fromJson("[\"" + value + "\"]");
    return document.array().at(0).toString().toLatin1();
}

std::optional<QByteArray> decodedImage(const QByteArray &value)
{
    const QByteArray base64 = value.contains('\\') ? unescapedBase64(value) : value;
    const auto result = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(*result) : std::nullopt;
}

QByteArray dateText(double date)
{
    return QByteArray::number(date, 'g', QLocale::FloatingPointShortest);
}

} // namespace ostrelle
