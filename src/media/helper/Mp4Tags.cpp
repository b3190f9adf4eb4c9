#include "media_helper/Mp4Tags.h"

#include "media_helper/AudioFacts.h"
#include "media_helper/ByteFields.h"
#include "media_helper/TempoTag.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <string>

// The tags' layout: QuickTime File Format, "Metadata"; iTunes' list of items is its older form. TagLib reads the
// pictures as well, and takes of a tempo the first two bytes, whatever its type.

namespace ostrelle {
namespace {

/// Of a number or a short text.
constexpr std::size_t kLongestValue = 256;
/// Behind the type of a value stands its country and language.
constexpr std::size_t kValueHeader = 8;

enum ValueType : unsigned {
    Implicit = 0,
    Utf8 = 1,
    Utf16 = 2,
    SignedInteger = 21,
    UnsignedInteger = 22,
    Float32 = 23,
    Float64 = 24,
};

struct Value
{
    unsigned type = Implicit;
    std::vector<std::uint8_t> bytes;
};

std::optional<Value> valueIn(ByteSource &source, const Mp4Box &data)
{
    const std::uint64_t size = data.end - data.begin;
    std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(size, kLongestValue + 1));
    if (size < kValueHeader || size > kLongestValue || !readWhole(source, data.begin, bytes))
        return std::nullopt;
    Value value;
    value.type = static_cast<unsigned>(bigEndian(ByteSpan(bytes).first(4)));
    value.bytes.assign(bytes.begin() + kValueHeader, bytes.end());
    return value;
}

std::optional<double> numberOf(const Value &value)
{
    const std::uint64_t bits = value.bytes.size() <= 8 ? bigEndian(value.bytes) : 0;
    const auto unusedBits = static_cast<unsigned>(64 - 8 * std::min<std::size_t>(value.bytes.size(), 8));
    const bool isEmpty = value.bytes.empty() || value.bytes.size() > 8;
    switch (value.type) {
    case Implicit:
    case SignedInteger:
        return isEmpty
                   ? std::nullopt
                   : std::optional(static_cast<double>(static_cast<std::int64_t>(bits << unusedBits) >> unusedBits));
    case UnsignedInteger:
        return isEmpty ? std::nullopt : std::optional(static_cast<double>(bits));
    case Float32:
        return value.bytes.size() == 4 ? std::optional<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
                                       : std::nullopt;
    case Float64:
        return value.bytes.size() == 8 ? std::optional(std::bit_cast<double>(bits)) : std::nullopt;
    default:
        return std::nullopt;
    }
}

/// A number has no letters beyond ASCII; what has is none.
std::string textOf(const Value &value)
{
    if (value.type == Utf8)
        return std::string(asText(value.bytes));
    std::string text;
    for (std::size_t i = 0; value.type == Utf16 && i + 1 < value.bytes.size(); i += 2)
        text += value.bytes[i] == 0 && value.bytes[i + 1] < 0x80 ? static_cast<char>(value.bytes[i + 1]) : '?';
    return text;
}

std::optional<double> tempoOf(const Value &value)
{
    const auto number = numberOf(value);
    return number ? tempoFromNumber(*number) : tempoFromText(textOf(value));
}

/// The box of the tags' items.
std::optional<Mp4Box> findItems(ByteSource &source, const Mp4Box &movie)
{
    const auto meta = findMp4Box(source, movie, {"udta", "meta"});
    if (!meta)
        return std::nullopt;
    // QuickTime's has no version before the boxes.
    std::array<std::uint8_t, 8> first{};
    const bool hasVersion = readWhole(source, meta->begin, first) && asText(first).substr(4) != "hdlr";
    return Mp4Walk(source, *meta, hasVersion ? 4 : 0).next("ilst");
}

bool isNamed(ByteSource &source, const Mp4Box &item, std::string_view expected)
{
    const auto name = Mp4Walk(source, item).next("name");
    std::vector<std::uint8_t> text(expected.size());
    constexpr std::uint64_t kVersion = 4;
    return name && name->end - name->begin == kVersion + expected.size() &&
           readWhole(source, name->begin + kVersion, text) && asText(text) == expected;
}

/// " 00000000 00000840 000001CA 00000000003F31F6 …": delay, padding and what lies between.
std::optional<std::uint64_t> samplesIn(std::string_view comment)
{
    constexpr int kField = 3;
    std::uint64_t value = 0;
    for (int field = 0; field <= kField; ++field) {
        comment.remove_prefix(std::min(comment.find_first_not_of(' '), comment.size()));
        const auto result = std::from_chars(comment.data(), comment.data() + comment.size(), value, 16);
        if (result.ec != std::errc())
            return std::nullopt;
        comment.remove_prefix(static_cast<std::size_t>(result.ptr - comment.data()));
    }
    return value;
}

} // namespace

std::optional<Mp4Box> findMovie(ByteSource &source)
{
    const auto first = Mp4Walk(source, 0, source.size()).next();
    if (!first || first->type != mp4Type("ftyp"))
        return std::nullopt;
    return Mp4Walk(source, 0, source.size()).next("moov");
}

std::optional<std::uint64_t> commentedSamples(ByteSource &source, const Mp4Box &movie)
{
    const auto items = findItems(source, movie);
    if (!items)
        return std::nullopt;
    Mp4Walk walk(source, *items);
    while (const auto item = walk.next("----")) {
        if (!isNamed(source, *item, "iTunSMPB"))
            continue;
        const auto data = Mp4Walk(source, *item).next("data");
        const auto value = data ? valueIn(source, *data) : std::nullopt;
        return value ? samplesIn(asText(value->bytes)) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<double> readMp4Tempo(ByteSource &source)
{
    const auto movie = findMovie(source);
    const auto items = movie ? findItems(source, *movie) : std::nullopt;
    if (!items)
        return std::nullopt;
    Mp4Walk walk(source, *items);
    while (const auto item = walk.next("tmpo")) {
        Mp4Walk values(source, *item);
        while (const auto data = values.next("data")) {
            const auto value = valueIn(source, *data);
            if (const auto tempo = value ? tempoOf(*value) : std::nullopt)
                return tempo;
        }
    }
    return std::nullopt;
}

} // namespace ostrelle
