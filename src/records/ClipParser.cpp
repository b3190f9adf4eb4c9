#include "records/ClipParser.h"

#include "records/ClipCodec.h"
#include "records/RecordText.h"

#include <simdjson.h>

#include <cstring>
#include <string_view>
#include <utility>

namespace ostrelle {
namespace {

namespace ondemand = simdjson::ondemand;

/// One past the closing quote of a string whose first character is at `at`, or null.
const char *endOfString(const char *at, const char *end)
{
    const char *const begin = at;
    while ((at = static_cast<const char *>(std::memchr(at, '"', static_cast<std::size_t>(end - at))))) {
        const char *escape = at;
        while (escape > begin && escape[-1] == '\\')
            --escape;
        ++at;
        if ((at - 1 - escape) % 2 == 0)
            return at;
    }
    return nullptr;
}

bool isBase64Letter(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

/// Without branches, so that the compiler takes many letters at a time: this reads every image of the history at start.
bool blockIsBase64(const char *block)
{
    constexpr int kBlock = 64;
    unsigned char bad = 0;
    for (int i = 0; i < kBlock; ++i) {
        const auto c = static_cast<unsigned char>(block[i]);
        const auto letter = static_cast<unsigned char>((c | 0x20) - 'a');
        const auto digit = static_cast<unsigned char>(c - '/'); // '/' lies just below the digits
        bad = static_cast<unsigned char>(bad | ((letter > 25) & (digit > 10) & (c != '+')));
    }
    return bad == 0;
}

/// How many bytes `text` stands for, or nothing when it is no padded Base64.
std::optional<qint64> base64Size(QByteArrayView text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    qsizetype letters = text.size();
    while (letters > 0 && text.size() - letters < 2 && text[letters - 1] == '=')
        --letters;
    qsizetype at = 0;
    for (; at + 64 <= letters; at += 64) {
        if (!blockIsBase64(text.data() + at))
            return std::nullopt;
    }
    for (; at < letters; ++at) {
        if (!isBase64Letter(static_cast<unsigned char>(text[at])))
            return std::nullopt;
    }
    return text.size() / 4 * 3 - (text.size() - letters);
}

std::optional<qint64> imageSize(QByteArrayView value)
{
    if (value.contains('\\'))
        return base64Size(unescapedBase64(value.toByteArray()));
    return base64Size(value);
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Collects the members of one object.
class RecordReader
{
public:
    explicit RecordReader(QByteArrayView object)
        : m_object(object)
    {
    }

    bool read(std::string_view key, ondemand::value &value);
    std::optional<StoredClip> finish(bool isCompact) &&;

private:
    enum Seen : unsigned {
        Id = 1,
        Kind = 2,
        Text = 4,
        Paths = 8,
        Image = 16,
        Type = 32,
        Date = 64,
        Pinned = 128,
        App = 256
    };

    /// False, and not compact, for a key that comes twice: what lies there must not be copied as it is.
    bool isFirst(Seen key)
    {
        const bool first = (m_seen & key) == 0;
        m_seen |= key;
        m_isCanonical = m_isCanonical && first;
        return first;
    }
    bool readString(ondemand::value &value, std::optional<QString> &out);
    bool readId(ondemand::value &value);
    bool readKind(ondemand::value &value);
    bool readText(ondemand::value &value);
    bool readPaths(ondemand::value &value);
    bool readImage(ondemand::value &value);

    /// Takes a null, which counts as absent.
    bool isAbsent(ondemand::value &value)
    {
        bool isNull = false;
        if (value.is_null().get(isNull) != simdjson::SUCCESS || !isNull)
            return false;
        m_isCanonical = false;
        return true;
    }
    std::optional<ByteSpan> spanOf(ondemand::value &value) const;

    QByteArrayView m_object;
    StoredClip m_clip;
    std::optional<QString> m_imageType;
    std::optional<ByteSpan> m_text;
    std::optional<ByteSpan> m_image;
    qint64 m_imageSize = 0;
    unsigned m_seen = 0;
    bool m_isCanonical = true;
};

bool RecordReader::readString(ondemand::value &value, std::optional<QString> &out)
{
    if (isAbsent(value)) {
        out.reset();
        return true;
    }
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        return false;
    out = toQString(text);
    return true;
}

bool RecordReader::readId(ondemand::value &value)
{
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        return false;
    const QByteArrayView view(text.data(), static_cast<qsizetype>(text.size()));
    const std::optional<QUuid> id = uuidFromText(view);
    m_isCanonical = m_isCanonical && id && view == uuidText(*id);
    m_clip.item.id = id.value_or(QUuid());
    return id.has_value();
}

bool RecordReader::readKind(ondemand::value &value)
{
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        return false;
    const std::optional<ClipItem::Kind> kind = clipKindFromRawValue(toQString(text));
    m_clip.item.kind = kind.value_or(ClipItem::Kind::Text);
    return kind.has_value();
}

std::optional<ByteSpan> RecordReader::spanOf(ondemand::value &value) const
{
    ondemand::raw_json_string raw;
    if (value.get_raw_json_string().get(raw) != simdjson::SUCCESS)
        return std::nullopt;
    const char *end = endOfString(raw.raw(), m_object.data() + m_object.size());
    if (!end)
        return std::nullopt;
    return ByteSpan{raw.raw() - m_object.data(), end - 1 - raw.raw()};
}

bool RecordReader::readText(ondemand::value &value)
{
    m_text.reset();
    // get_string() takes the value, so that its place is asked for on a copy.
    ondemand::value copy = value;
    if (!readString(value, m_clip.item.text))
        return false;
    if (m_clip.item.text)
        m_text = spanOf(copy);
    return m_clip.item.text.has_value() == m_text.has_value();
}

bool RecordReader::readPaths(ondemand::value &value)
{
    m_clip.item.paths.reset();
    if (isAbsent(value))
        return true;
    ondemand::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        return false;
    QStringList paths;
    for (auto element : array) {
        std::string_view path;
        if (element.get_string().get(path) != simdjson::SUCCESS)
            return false;
        paths.append(toQString(path));
    }
    m_clip.item.paths = paths;
    return true;
}

bool RecordReader::readImage(ondemand::value &value)
{
    m_image.reset();
    if (isAbsent(value))
        return true;
    m_image = spanOf(value);
    if (!m_image)
        return false;
    const std::optional<qint64> size = imageSize(m_object.sliced(m_image->offset, m_image->length));
    m_imageSize = size.value_or(0);
    return size.has_value();
}

bool RecordReader::read(std::string_view key, ondemand::value &value)
{
    if (key == "id")
        return isFirst(Id), readId(value);
    if (key == "kind")
        return isFirst(Kind), readKind(value);
    if (key == "text")
        return isFirst(Text), readText(value);
    if (key == "paths")
        return isFirst(Paths), readPaths(value);
    if (key == "imageData")
        return isFirst(Image), readImage(value);
    if (key == "imageType")
        return isFirst(Type), readString(value, m_imageType);
    if (key == "date")
        return isFirst(Date), value.get_double().get(m_clip.item.date) == simdjson::SUCCESS;
    if (key == "pinned")
        return isFirst(Pinned), value.get_bool().get(m_clip.item.pinned) == simdjson::SUCCESS;
    if (key == "appName")
        return isFirst(App), readString(value, m_clip.item.appName);
    m_isCanonical = false;
    return true;
}

std::optional<StoredClip> RecordReader::finish(bool isCompact) &&
{
    constexpr unsigned kRequired = Id | Kind | Date | Pinned;
    if ((m_seen & kRequired) != kRequired)
        return std::nullopt;
    if (m_image || m_imageType)
        m_clip.item.image = ClipImage{m_imageType.value_or(QString()), m_imageSize, QSize()};
    m_clip.hasImageData = m_image.has_value();
    m_clip.record = {0, m_object.size()};
    m_clip.value = m_image ? *m_image : m_text.value_or(ByteSpan());
    m_clip.isCurrent = isCompact && m_isCanonical;
    return std::move(m_clip);
}

} // namespace

const qsizetype ClipParser::kPadding = simdjson::SIMDJSON_PADDING;

struct ClipParser::Parser
{
    ondemand::parser parser;
};

ClipParser::ClipParser()
    : m_parser(std::make_unique<Parser>())
{
}

ClipParser::~ClipParser() = default;

std::optional<StoredClip> ClipParser::parse(QByteArrayView object, bool isCompact)
{
    const auto length = static_cast<std::size_t>(object.size());
    const simdjson::padded_string_view text(object.data(), length, length + simdjson::SIMDJSON_PADDING);
    ondemand::document document;
    ondemand::object members;
    if (m_parser->parser.iterate(text).get(document) != simdjson::SUCCESS ||
        document.get_object().get(members) != simdjson::SUCCESS)
        return std::nullopt;
    RecordReader reader(object);
    for (simdjson::simdjson_result<ondemand::field> member : members) {
        ondemand::field field;
        std::string_view key;
        if (std::move(member).get(field) != simdjson::SUCCESS || field.unescaped_key().get(key) != simdjson::SUCCESS ||
            !reader.read(key, field.value()))
            return std::nullopt;
    }
    return std::move(reader).finish(isCompact);
}

const char *endOfObject(const char *begin, const char *end, bool &isCompact)
{
    int depth = 0;
    for (const char *at = begin; at && at < end;) {
        const char token = *at++;
        if (token == '"') {
            at = endOfString(at, end);
        } else if (token == '{' || token == '[') {
            ++depth;
        } else if (token == '}' || token == ']') {
            if (--depth == 0)
                return at;
        } else if (token == ' ' || token == '\t' || token == '\n' || token == '\r') {
            isCompact = false;
        }
    }
    return nullptr;
}

} // namespace ostrelle
