#include "media_helper/AudioFacts.h"
#include "media_helper/ByteFields.h"

#include <algorithm>
#include <array>

// The container: RFC 3533. TagLib reads the comments as well, in which pictures of many megabytes may lie.

namespace ostrelle {
namespace {

constexpr std::size_t kPageHeader = 27;
/// With as many segments as it can have, all of them full.
constexpr std::uint64_t kLongestPage = kPageHeader + 255 + 255 * 255;
constexpr std::size_t kReadOfFirstPacket = 80;
constexpr unsigned kOpusRate = 48000;
/// Headers take pages of their own.
constexpr int kMostHeaderPages = 2000;
/// More than the packets of one page can hold: a stream that begins later was cut out of a longer one.
constexpr std::int64_t kLongestPageInSamples = 255 * 8192;

struct Page
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::int64_t position = 0; ///< of the last sample that ends in it; -1 when none does
    std::uint32_t serial = 0;
    int packets = 0; ///< that end in it
};

std::optional<Page> pageAt(ByteSource &source, std::uint64_t offset)
{
    std::array<std::uint8_t, kPageHeader> header{};
    if (!readWhole(source, offset, header) || asText(header).substr(0, 5) != std::string_view("OggS\0", 5))
        return std::nullopt;
    std::array<std::uint8_t, 255> lengths{};
    const std::span<std::uint8_t> segments(lengths.data(), header[26]);
    if (!readWhole(source, offset + kPageHeader, segments))
        return std::nullopt;
    Page page;
    page.offset = offset;
    page.size = kPageHeader + segments.size();
    for (const std::uint8_t length : segments) {
        page.size += length;
        page.packets += length < 255 ? 1 : 0;
    }
    page.position = static_cast<std::int64_t>(littleEndian(ByteSpan(header).subspan(6, 8)));
    page.serial = static_cast<std::uint32_t>(littleEndian(ByteSpan(header).subspan(14, 4)));
    return page.size <= source.size() - offset ? std::optional(page) : std::nullopt;
}

/// The last page of a stream in which a sample ends.
std::optional<Page> lastPage(ByteSource &source, std::uint32_t serial)
{
    const std::uint64_t begin = source.size() - std::min(source.size(), 2 * kLongestPage);
    std::vector<std::uint8_t> bytes(source.size() - begin);
    bytes.resize(source.readAt(begin, bytes));
    MemorySource tail(bytes);
    const std::string_view text = asText(bytes);
    for (std::size_t at = text.rfind("OggS"); at != std::string_view::npos; at = text.rfind("OggS", at - 1)) {
        const auto page = pageAt(tail, at);
        if (page && page->serial == serial && page->position >= 0)
            return page;
        if (at == 0)
            break;
    }
    return std::nullopt;
}

/// The first page of a stream at `offset` or behind it in which a sample ends.
std::optional<Page> nextPage(ByteSource &source, std::uint64_t offset, std::uint32_t serial)
{
    for (int pages = 0; pages < kMostHeaderPages; ++pages) {
        const auto page = pageAt(source, offset);
        if (!page || (page->serial == serial && page->position > 0 && page->packets > 0))
            return page;
        offset += page->size;
    }
    return std::nullopt;
}

/// The position from which the stream counts. Its first page tells where its packets end; how long they are is
/// concluded from the second one.
double firstPosition(ByteSource &source, std::uint32_t serial)
{
    const auto first = nextPage(source, 0, serial);
    if (!first || first->position <= kLongestPageInSamples)
        return 0;
    const auto second = nextPage(source, first->offset + first->size, serial);
    const auto end = static_cast<double>(first->position);
    if (!second)
        return end;
    const double perPacket = (static_cast<double>(second->position) - end) / second->packets;
    return std::clamp(end - perPacket * first->packets, 0.0, end);
}

struct Stream
{
    unsigned sampleRate = 0;
    unsigned channels = 0;
    std::int32_t bitRate = 0; ///< nominal; 0 or less when it is not told
    unsigned preSkip = 0;     ///< decoded before what is to be heard
};

std::optional<Stream> streamOf(ByteSpan packet)
{
    const std::string_view text = asText(packet);
    const auto number = [packet](std::size_t at, std::size_t size) {
        return static_cast<std::uint32_t>(littleEndian(packet.subspan(at, size)));
    };
    Stream stream;
    if (text.substr(0, 7) == "\1vorbis") { // Vorbis I, 4.2.2
        stream.channels = number(11, 1);
        stream.sampleRate = number(12, 4);
        stream.bitRate = static_cast<std::int32_t>(number(20, 4));
    } else if (text.substr(0, 8) == "OpusHead") { // RFC 7845, 5.1
        stream.channels = number(9, 1);
        stream.sampleRate = kOpusRate;
        stream.preSkip = number(10, 2);
    } else if (text.substr(0, 8) == "Speex   ") { // Speex manual, 5.3
        stream.sampleRate = number(36, 4);
        stream.channels = number(48, 4);
        stream.bitRate = static_cast<std::int32_t>(number(52, 4));
    }
    const bool isSound = stream.sampleRate > 0 && stream.channels > 0 && stream.channels < 256;
    return isSound ? std::optional(stream) : std::nullopt;
}

} // namespace

std::optional<AudioFacts> readOggFacts(ByteSource &source)
{
    const auto first = pageAt(source, 0);
    std::array<std::uint8_t, kReadOfFirstPacket> packet{};
    // All three kinds begin with one packet on a page of its own.
    source.readAt(kPageHeader + 1, packet);
    const auto stream = first ? streamOf(packet) : std::nullopt;
    if (!stream)
        return std::nullopt;
    AudioFacts facts;
    facts.sampleRate = stream->sampleRate;
    facts.channels = static_cast<int>(stream->channels);
    if (stream->bitRate > 0)
        facts.bitRate = stream->bitRate;
    const auto last = lastPage(source, first->serial);
    // The last page is of another stream where several were joined.
    if (!last)
        return std::nullopt;
    const double samples = static_cast<double>(last->position) - firstPosition(source, first->serial) - stream->preSkip;
    facts.duration = std::max(samples, 0.0) / stream->sampleRate;
    return facts;
}

} // namespace ostrelle
