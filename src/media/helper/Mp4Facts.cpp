#include "media_helper/AacConfiguration.h"
#include "media_helper/AudioFacts.h"
#include "media_helper/ByteFields.h"
#include "media_helper/Mp4Tags.h"

#include <algorithm>
#include <array>
#include <cmath>

// ISO/IEC 14496-12 and -14. TagLib knows neither edit lists nor what a decoder makes of the configuration, and goes
// through every fragment of the file.

namespace ostrelle {
namespace {

constexpr std::uint64_t kVersion = 4;
constexpr std::uint64_t kSampleEntry = 28;
constexpr std::size_t kLongestConfiguration = 512;
constexpr int kMostEdits = 64;
constexpr int kMostTracks = 64;

/// A length in units of its own.
struct Timed
{
    std::uint64_t timescale = 0;
    std::uint64_t duration = 0;
    double seconds() const
    {
        return timescale > 0 ? static_cast<double>(duration) / static_cast<double>(timescale) : 0;
    }
};

/// Both "mvhd" and "mdhd" begin so.
Timed timesIn(ByteSource &source, const std::optional<Mp4Box> &header)
{
    std::array<std::uint8_t, 32> bytes{};
    if (!header || !readWhole(source, header->begin, bytes))
        return {};
    const ByteSpan fields(bytes);
    Timed times;
    if (bytes[0] == 1) {
        times = {bigEndian(fields.subspan(20, 4)), bigEndian(fields.subspan(24, 8))};
    } else {
        times = {bigEndian(fields.subspan(12, 4)), bigEndian(fields.subspan(16, 4))};
    }
    const std::uint64_t unknown = bytes[0] == 1 ? ~std::uint64_t(0) : 0xffffffffU;
    if (times.duration == unknown)
        times.duration = 0;
    return times;
}

std::uint32_t handlerOf(ByteSource &source, const Mp4Box &track)
{
    const auto handler = findMp4Box(source, track, {"mdia", "hdlr"});
    std::array<std::uint8_t, 12> bytes{};
    if (!handler || !readWhole(source, handler->begin, bytes))
        return 0;
    return static_cast<std::uint32_t>(bigEndian(ByteSpan(bytes).subspan(8)));
}

struct Tracks
{
    std::optional<Mp4Box> sound; ///< the first
    bool hasVideo = false;
};

Tracks tracksOf(ByteSource &source, const Mp4Box &movie)
{
    Tracks tracks;
    Mp4Walk walk(source, movie);
    for (int count = 0; count < kMostTracks; ++count) {
        const auto track = walk.next("trak");
        if (!track)
            break;
        const std::uint32_t handler = handlerOf(source, *track);
        tracks.hasVideo = tracks.hasVideo || handler == mp4Type("vide");
        if (handler == mp4Type("soun") && !tracks.sound)
            tracks.sound = track;
    }
    return tracks;
}

/// What the edit list lets be heard of the media, without waiting before; nothing when there is no such list.
std::optional<double> editedSeconds(ByteSource &source, const Mp4Box &track, const Timed &movie, const Timed &media)
{
    const auto list = findMp4Box(source, track, {"edts", "elst"});
    std::array<std::uint8_t, 8> head{};
    if (!list || !readWhole(source, list->begin, head) || movie.timescale == 0)
        return std::nullopt;
    const std::size_t field = head[0] == 1 ? 8 : 4;
    const std::uint64_t size = 2 * field + 4;
    const auto count = std::min<std::uint64_t>(bigEndian(ByteSpan(head).subspan(4)), kMostEdits);
    const std::uint64_t nowhere = field == 8 ? ~std::uint64_t(0) : 0xffffffffU;
    Timed heard{movie.timescale, 0};
    std::uint64_t begin = 0;
    int edits = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        std::array<std::uint8_t, 16> entry{};
        if (!readWhole(source, list->begin + sizeof head + i * size, std::span(entry).first(2 * field)))
            break;
        const std::uint64_t from = bigEndian(ByteSpan(entry).subspan(field, field));
        if (from == nowhere)
            continue;
        heard.duration += bigEndian(ByteSpan(entry).first(field));
        begin = from;
        ++edits;
    }
    // The movie often counts in milliseconds; where one edit takes the media up to its end, the media tells it exactly.
    const Timed rest{media.timescale, media.duration - std::min(begin, media.duration)};
    const double tick = 1 / static_cast<double>(movie.timescale);
    if (edits == 1 && std::abs(rest.seconds() - heard.seconds()) < 2 * tick)
        return rest.seconds();
    return heard.duration > 0 ? std::optional(heard.seconds()) : std::nullopt;
}

double soundSeconds(ByteSource &source, const Mp4Box &movie, const Mp4Box &track, const Timed &movieTimes)
{
    const Timed media = timesIn(source, findMp4Box(source, track, {"mdia", "mdhd"}));
    if (const auto edited = editedSeconds(source, track, movieTimes, media))
        return *edited;
    const auto commented = commentedSamples(source, movie);
    const bool isPart = commented && *commented > 0 && *commented <= media.duration;
    return isPart ? Timed{media.timescale, *commented}.seconds() : media.seconds();
}

/// The fields of a descriptor (ISO/IEC 14496-1, 8.3.3), and what follows in `rest`; empty when it has another tag.
ByteSpan descriptor(ByteSpan &rest, unsigned tag)
{
    if (rest.empty() || rest[0] != tag)
        return {};
    std::size_t size = 0;
    std::size_t at = 1;
    bool goesOn = true;
    for (; goesOn && at < rest.size() && at <= 4; ++at) {
        size = size << 7U | (rest[at] & 0x7fU);
        goesOn = (rest[at] & 0x80U) != 0;
    }
    const ByteSpan content = rest.subspan(at, std::min(size, rest.size() - at));
    rest = rest.subspan(at + content.size());
    return content;
}

std::optional<AudioFacts> aacFacts(ByteSpan stream)
{
    constexpr unsigned kStreamTag = 3;
    constexpr unsigned kDecoderTag = 4;
    constexpr unsigned kSpecificTag = 5;
    constexpr std::size_t kDecoderFields = 13;
    ByteSpan fields = descriptor(stream, kStreamTag);
    // With references to other streams it is none of a file.
    if (fields.size() < 3 || (fields[2] & 0xe0U) != 0)
        return std::nullopt;
    fields = fields.subspan(3);
    ByteSpan decoder = descriptor(fields, kDecoderTag);
    if (decoder.size() < kDecoderFields)
        return std::nullopt;
    const auto bitRate = static_cast<double>(bigEndian(decoder.subspan(9, 4)));
    decoder = decoder.subspan(kDecoderFields);
    const auto configuration = readAacConfiguration(descriptor(decoder, kSpecificTag));
    if (!configuration)
        return std::nullopt;
    AudioFacts facts;
    facts.sampleRate = configuration->sampleRate;
    facts.channels = static_cast<int>(configuration->channels);
    if (bitRate > 0)
        facts.bitRate = bitRate;
    return facts;
}

/// Of Apple Lossless, by its "magic cookie".
std::optional<AudioFacts> losslessFacts(ByteSpan cookie)
{
    if (cookie.size() < 24)
        return std::nullopt;
    AudioFacts facts;
    facts.sampleRate = static_cast<double>(bigEndian(cookie.subspan(20, 4)));
    facts.channels = cookie[9];
    const auto bitRate = static_cast<double>(bigEndian(cookie.subspan(16, 4)));
    // Some encoders put that of the samples before compression.
    if (bitRate > 0 && bitRate < *facts.sampleRate * cookie[9] * cookie[5])
        facts.bitRate = bitRate;
    return *facts.sampleRate > 0 ? std::optional(facts) : std::nullopt;
}

std::optional<AudioFacts> streamFacts(ByteSource &source, const Mp4Box &track)
{
    const auto descriptions = findMp4Box(source, track, {"mdia", "minf", "stbl", "stsd"});
    const auto entry = descriptions ? Mp4Walk(source, *descriptions, kVersion + 4).next() : std::nullopt;
    std::array<std::uint8_t, kSampleEntry> fields{};
    // QuickTime's later versions have more fields here.
    if (!entry || !readWhole(source, entry->begin, fields) || bigEndian(ByteSpan(fields).subspan(8, 2)) != 0)
        return std::nullopt;
    const bool isLossless = entry->type == mp4Type("alac");
    if (!isLossless && entry->type != mp4Type("mp4a"))
        return std::nullopt;
    const auto box = Mp4Walk(source, *entry, kSampleEntry).next(isLossless ? "alac" : "esds");
    if (!box || box->end - box->begin < kVersion)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(box->end - box->begin - kVersion, kLongestConfiguration));
    if (!readWhole(source, box->begin + kVersion, bytes))
        return std::nullopt;
    return isLossless ? losslessFacts(bytes) : aacFacts(bytes);
}

} // namespace

std::optional<AudioFacts> readMp4Facts(ByteSource &source)
{
    const auto movie = findMovie(source);
    // The lengths of a fragmented one stand in its fragments.
    if (!movie || findMp4Box(source, *movie, {"mvex"}))
        return std::nullopt;
    const Tracks tracks = tracksOf(source, *movie);
    auto facts = tracks.sound ? streamFacts(source, *tracks.sound) : std::nullopt;
    if (!facts)
        return std::nullopt;
    const Timed movieTimes = timesIn(source, findMp4Box(source, *movie, {"mvhd"}));
    const bool isFilm = tracks.hasVideo && movieTimes.duration > 0;
    facts->duration = isFilm ? movieTimes.seconds() : soundSeconds(source, *movie, *tracks.sound, movieTimes);
    return facts;
}

} // namespace ostrelle
