#include "media_helper/Id3Tag.h"

#include "media_helper/ByteFields.h"
#include "media_helper/SourceViews.h"
#include "media_helper/TempoTag.h"

#include <algorithm>
#include <array>
#include <string>

// The tag: id3.org, ID3v2.2.0 to ID3v2.4.0. TagLib would read the whole tag, and the pictures in it are large; and a
// program that links it starts slowly.

namespace ostrelle {
namespace {

constexpr std::size_t kTagHeader = 10;
constexpr unsigned kUnsynchronised = 0x80;
constexpr unsigned kHasExtendedHeader = 0x40;
constexpr unsigned kHasFooter = 0x10;
/// A number, in any encoding.
constexpr std::uint64_t kLongestTempoFrame = 1024;
/// Of a tag whose frames cannot be told apart before all of it was read.
constexpr std::uint64_t kReadOfUnsynchronised = 1U << 20U;

struct TagHeader
{
    std::array<std::uint8_t, kTagHeader> bytes{};
    unsigned version() const { return bytes[3]; }
    bool has(unsigned flag) const { return (bytes[5] & flag) != 0; }
    std::uint64_t bodySize() const { return syncSafeNumber(ByteSpan(bytes).subspan(6, 4)); }
};

std::optional<TagHeader> tagHeaderAt(ByteSource &source, std::uint64_t offset)
{
    TagHeader header;
    if (!readWhole(source, offset, header.bytes) || asText(header.bytes).substr(0, 3) != "ID3")
        return std::nullopt;
    const bool isSyncSafe = std::all_of(header.bytes.begin() + 6, header.bytes.end(), [](auto b) { return b < 0x80; });
    return header.version() != 0xff && isSyncSafe ? std::optional(header) : std::nullopt;
}

/// Without the zeros that were put behind each byte of ones.
std::vector<std::uint8_t> synchronised(ByteSpan bytes)
{
    std::vector<std::uint8_t> plain;
    plain.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 0 || bytes[i] != 0 || bytes[i - 1] != 0xff)
            plain.push_back(bytes[i]);
    }
    return plain;
}

/// What a text frame holds, in ASCII; a number has no other letters.
std::string asciiOf(ByteSpan content)
{
    enum Encoding : std::uint8_t { Latin1, Utf16, Utf16BigEndian, Utf8 };
    if (content.empty() || content[0] > Utf8)
        return {};
    ByteSpan letters = content.subspan(1);
    std::string text;
    const auto put = [&text](std::uint64_t letter) { text += letter < 0x80 ? static_cast<char>(letter) : '?'; };
    if (content[0] == Latin1 || content[0] == Utf8) {
        std::for_each(letters.begin(), letters.end(), put);
        return text;
    }
    bool isLittle = content[0] == Utf16;
    for (; letters.size() >= 2; letters = letters.subspan(2)) {
        const std::uint64_t letter = bigEndian(letters.first(2));
        // The mark before each value, as it reads in either order.
        if (letter == 0xfeff || letter == 0xfffe)
            isLittle = letter == 0xfffe;
        else
            put(isLittle ? littleEndian(letters.first(2)) : letter);
    }
    return text;
}

/// Hops from frame to frame.
class FrameWalk
{
public:
    FrameWalk(ByteSource &body, const TagHeader &header)
        : m_body(body)
        , m_header(header)
        , m_isOld(header.version() == 2)
        , m_frameHeader(m_isOld ? 6 : 10)
    {
    }

    std::optional<double> tempo()
    {
        for (std::uint64_t at = begin(); at + m_frameHeader < m_body.size();) {
            std::array<std::uint8_t, 10> bytes{};
            const std::span<std::uint8_t> head(bytes.data(), m_frameHeader);
            if (!readWhole(m_body, at, head) || !isIdentifier(identifier(head)))
                break;
            const std::uint64_t size = m_frameHeader + frameSize(head, at);
            const bool isTempo = identifier(head) == (m_isOld ? "TBP" : "TBPM");
            if (const auto value = isTempo ? frameTempo(at, size) : std::nullopt)
                return value;
            at += size;
        }
        return std::nullopt;
    }

private:
    std::uint64_t begin()
    {
        std::array<std::uint8_t, 4> size{};
        if (m_isOld || !m_header.has(kHasExtendedHeader) || !readWhole(m_body, 0, size))
            return 0;
        return m_header.version() == 3 ? 4 + bigEndian(size) : syncSafeNumber(size);
    }

    std::string_view identifier(ByteSpan head) const { return asText(head.first(m_isOld ? 3 : 4)); }

    static bool isIdentifier(std::string_view text)
    {
        return std::all_of(text.begin(), text.end(),
                           [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
    }

    std::uint64_t frameSize(ByteSpan head, std::uint64_t at)
    {
        const ByteSpan bytes = m_isOld ? head.subspan(3, 3) : head.subspan(4, 4);
        if (m_header.version() < 4)
            return bigEndian(bytes);
        // Some programs write plain numbers where seven bits of each byte should be used.
        const std::uint64_t plain = bigEndian(bytes);
        const std::uint64_t safe = syncSafeNumber(bytes);
        return plain != safe && !isFrameAt(at + m_frameHeader + safe) && isFrameAt(at + m_frameHeader + plain) ? plain
                                                                                                               : safe;
    }

    /// Or the end, or padding.
    bool isFrameAt(std::uint64_t at)
    {
        std::array<std::uint8_t, 4> text{};
        if (at == m_body.size())
            return true;
        return readWhole(m_body, at, text) && (text[0] == 0 || isIdentifier(asText(text)));
    }

    std::optional<double> frameTempo(std::uint64_t at, std::uint64_t size)
    {
        std::vector<std::uint8_t> bytes(std::min(size, kLongestTempoFrame));
        if (size > kLongestTempoFrame || !readWhole(m_body, at, bytes))
            return std::nullopt;
        const std::string text = asciiOf(contentOf(bytes));
        // Several values are kept apart by zeros.
        for (std::size_t begin = 0; begin <= text.size();) {
            const std::size_t end = std::min(text.find('\0', begin), text.size());
            if (const auto tempo = tempoFromText(std::string_view(text).substr(begin, end - begin)))
                return tempo;
            begin = end + 1;
        }
        return std::nullopt;
    }

    /// Behind the header and what its flags announce; nothing of what is packed or encrypted.
    std::vector<std::uint8_t> contentOf(ByteSpan frame) const
    {
        constexpr std::size_t kFlagsAt = 9;
        constexpr std::size_t kLengthField = 4;
        const unsigned flags = m_isOld ? 0 : frame[kFlagsAt];
        const bool isNewest = m_header.version() == 4;
        const unsigned unreadable = isNewest ? 0x0cU : 0xc0U;
        if ((flags & unreadable) != 0)
            return {};
        std::size_t begin = m_frameHeader;
        begin += (flags & (isNewest ? 0x40U : 0x20U)) != 0 ? 1 : 0;   // a group's number
        begin += isNewest && (flags & 0x01U) != 0 ? kLengthField : 0; // the length before it was changed
        const ByteSpan content = frame.subspan(std::min(begin, frame.size()));
        const bool isChanged = isNewest && ((flags & 0x02U) != 0 || m_header.has(kUnsynchronised));
        return isChanged ? synchronised(content) : std::vector<std::uint8_t>(content.begin(), content.end());
    }

    ByteSource &m_body;
    const TagHeader &m_header;
    bool m_isOld;
    std::size_t m_frameHeader;
};

} // namespace

std::uint64_t id3TagSize(ByteSource &source, std::uint64_t offset)
{
    const auto header = tagHeaderAt(source, offset);
    if (!header)
        return 0;
    return kTagHeader + header->bodySize() + (header->has(kHasFooter) ? kTagHeader : 0);
}

std::optional<double> id3Tempo(ByteSource &source, std::uint64_t offset)
{
    const auto header = tagHeaderAt(source, offset);
    if (!header || header->version() < 2 || header->version() > 4)
        return std::nullopt;
    const std::uint64_t begin = offset + kTagHeader;
    PartialSource body(source, begin, begin + header->bodySize());
    if (!header->has(kUnsynchronised) || header->version() == 4)
        return FrameWalk(body, *header).tempo();
    std::vector<std::uint8_t> stored(std::min(body.size(), kReadOfUnsynchronised));
    stored.resize(body.readAt(0, stored));
    const std::vector<std::uint8_t> plain = synchronised(stored);
    MemorySource decoded(plain);
    TagHeader plainHeader = *header;
    plainHeader.bytes[5] &= static_cast<std::uint8_t>(~kUnsynchronised);
    return FrameWalk(decoded, plainHeader).tempo();
}

} // namespace ostrelle
