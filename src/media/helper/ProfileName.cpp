#include "media_helper/ProfileName.h"

#include "media_helper/ByteFields.h"

#include <algorithm>

namespace ostrelle {
namespace {

using namespace std::literals;

/// A description is one line; what goes on for longer is cut.
constexpr std::size_t kLongestName = 256;
constexpr std::size_t kTypeHeader = 8;

void appendUtf8(std::string &text, std::uint32_t letter)
{
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto putRest = [&](int count) {
        for (int i = count - 1; i >= 0; --i)
            put(0x80 | (letter >> (6 * i) & 0x3f));
    };
    if (letter < 0x80) {
        put(letter);
    } else if (letter < 0x800) {
        put(0xc0 | letter >> 6);
        putRest(1);
    } else if (letter < 0x10000) {
        put(0xe0 | letter >> 12);
        putRest(2);
    } else {
        put(0xf0 | (letter >> 18 & 7));
        putRest(3);
    }
}

/// Up to a zero. A half of a letter alone is left out.
std::string fromUtf16(ByteSpan bytes)
{
    const auto unit = [bytes](std::size_t i) {
        return 2 * i + 2 <= bytes.size() ? static_cast<std::uint32_t>(bigEndian(bytes.subspan(2 * i, 2))) : 0U;
    };
    const auto isHigh = [](std::uint32_t half) { return half >= 0xd800 && half < 0xdc00; };
    const auto isLow = [](std::uint32_t half) { return half >= 0xdc00 && half < 0xe000; };
    std::string text;
    for (std::size_t i = 0; unit(i) != 0 && i < kLongestName; ++i) {
        const std::uint32_t letter = unit(i);
        if (isHigh(letter) && isLow(unit(i + 1)))
            appendUtf8(text, 0x10000 + ((letter - 0xd800) << 10) + (unit(++i) - 0xdc00));
        else if (!isHigh(letter) && !isLow(letter))
            appendUtf8(text, letter);
    }
    return text;
}

std::string upToZero(ByteSpan bytes)
{
    const std::string_view text = asText(bytes.first(std::min(bytes.size(), kLongestName)));
    return std::string(text.substr(0, text.find('\0')));
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char letter) { return static_cast<unsigned char>(letter) < 0x80; });
}

/// One profile (ICC.1:2001-04 and ICC.1:2010), of which nothing is believed but that its bytes are there.
class Profile
{
public:
    explicit Profile(ByteSpan bytes)
        : m_bytes(bytes)
    {
    }

    std::string name() const
    {
        constexpr std::size_t kMarkAt = 36;
        if (asText(part(m_bytes, kMarkAt, 4)) != "acsp"sv)
            return {};
        const ByteSpan description = tag("desc"sv);
        const std::string_view type = asText(part(description, 0, 4));
        if (type == "mluc"sv)
            return ofSeveral(description);
        if (type == "desc"sv)
            return ofOne(description);
        return type == "text"sv ? upToZero(part(description, kTypeHeader, kLongestName)) : std::string();
    }

private:
    /// As much of it as there is.
    static ByteSpan part(ByteSpan bytes, std::uint64_t offset, std::uint64_t size)
    {
        if (offset >= bytes.size())
            return {};
        const ByteSpan rest = bytes.subspan(static_cast<std::size_t>(offset));
        return rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(size, rest.size())));
    }
    static std::uint64_t number(ByteSpan bytes, std::uint64_t offset) { return bigEndian(part(bytes, offset, 4)); }

    ByteSpan tag(std::string_view name) const
    {
        constexpr std::size_t kTable = 128;
        constexpr std::uint64_t kEntry = 12;
        constexpr std::uint64_t kMostTags = 1000;
        const std::uint64_t count = std::min(number(m_bytes, kTable), kMostTags);
        for (std::uint64_t i = 0; i < count; ++i) {
            const ByteSpan entry = part(m_bytes, kTable + 4 + i * kEntry, kEntry);
            if (asText(part(entry, 0, 4)) == name)
                return part(m_bytes, number(entry, 4), number(entry, 8));
        }
        return {};
    }

    /// Of several languages: a number of records, and the size of each; then language, country, length and place.
    static std::string ofSeveral(ByteSpan description)
    {
        constexpr std::uint64_t kRecords = 16;
        constexpr std::uint64_t kRecord = 12;
        constexpr std::uint64_t kMostRecords = 1000;
        const std::uint64_t count = std::min(number(description, kTypeHeader), kMostRecords);
        const std::uint64_t size = std::max(number(description, kTypeHeader + 4), kRecord);
        std::string first;
        for (std::uint64_t i = 0; i < count; ++i) {
            const ByteSpan record = part(description, kRecords + i * size, kRecord);
            const std::uint64_t length = number(record, 4);
            const ByteSpan letters = part(description, number(record, 8), length);
            std::string text = letters.size() == length ? fromUtf16(letters) : std::string();
            if (asText(part(record, 0, 2)) == "en"sv && !text.empty())
                return text;
            if (first.empty())
                first = std::move(text);
        }
        return first;
    }

    /// In ASCII with its length, then in any one language.
    static std::string ofOne(ByteSpan description)
    {
        const std::uint64_t length = number(description, kTypeHeader);
        std::string ascii = upToZero(part(description, kTypeHeader + 4, length));
        if (!ascii.empty() && isAscii(ascii))
            return ascii;
        const std::uint64_t wide = kTypeHeader + 4 + length + 4;
        std::string text = fromUtf16(part(description, wide + 4, 2 * number(description, wide)));
        return text.empty() ? ascii : text;
    }

    ByteSpan m_bytes;
};

} // namespace

std::string profileName(const std::vector<std::uint8_t> &icc)
{
    return Profile(icc).name();
}

} // namespace ostrelle
