#include "media_helper/AudioFacts.h"
#include "media_helper/FrameScan.h"
#include "media_helper/SourceViews.h"
#include "media_helper/TrailingTags.h"
#include "media_helper/VbrHeader.h"

namespace ostrelle {
namespace {

/// Of a stream that frames are. In other files there may be bytes that look like a few.
constexpr double kLeastShare = 0.5;

AudioFacts factsOf(const AudioFrameHeader &header)
{
    AudioFacts facts;
    facts.sampleRate = header.sampleRate;
    facts.channels = static_cast<int>(header.channels);
    return facts;
}

/// A header that was left behind when the file was cut or joined counts something else.
bool isTrue(const VbrHeader &header, std::uint64_t bytes)
{
    constexpr std::uint64_t kSmallestFrame = 24;
    const std::uint64_t difference = header.bytes > bytes ? header.bytes - bytes : bytes - header.bytes;
    return header.frames < bytes / kSmallestFrame && (header.bytes == 0 || difference <= bytes / 16);
}

void addCounted(AudioFacts &facts, const VbrHeader &header, const PlacedFrame &first, std::uint64_t end)
{
    const std::uint64_t delays = header.delay + header.padding;
    const std::uint64_t samples = header.frames * first.header.samples;
    const std::uint64_t bytes = (header.bytes > 0 ? header.bytes : end - first.offset) - first.header.byteSize;
    facts.duration = static_cast<double>(samples - (delays < samples ? delays : 0)) / first.header.sampleRate;
    facts.bitRate = 8.0 * static_cast<double>(bytes) * first.header.sampleRate / static_cast<double>(samples);
}

void addScanned(AudioFacts &facts, const FrameScan &scan, const AudioFrameHeader &header)
{
    facts.duration = scan.frames * header.samples / header.sampleRate;
    if (scan.bitRate > 0)
        facts.bitRate = scan.bitRate;
    else if (header.bitRate > 0)
        facts.bitRate = 8.0 * scan.bytesPerFrame * header.sampleRate / header.samples;
}

} // namespace

std::optional<AudioFacts> readMpegFacts(ByteSource &source)
{
    PartialSource stream(source, 0, endBeforeTags(source));
    const auto first = firstFrame(stream, readMpegFrameHeader);
    if (!first)
        return std::nullopt;
    std::vector<std::uint8_t> frame(first->header.byteSize);
    frame.resize(stream.readAt(first->offset, frame));
    const auto counted = readVbrHeader(frame);
    AudioFacts facts = factsOf(first->header);
    if (counted && isTrue(*counted, stream.size() - first->offset)) {
        addCounted(facts, *counted, *first, stream.size());
        return facts;
    }
    const std::uint64_t begin = first->offset + (counted ? first->header.byteSize : 0);
    const auto scan = scanFrames(stream, begin, first->header, readMpegFrameHeader);
    if (!scan || scan->share < kLeastShare)
        return std::nullopt;
    addScanned(facts, *scan, first->header);
    return facts;
}

std::optional<AudioFacts> readAdtsFacts(ByteSource &source)
{
    PartialSource stream(source, 0, endBeforeTags(source));
    const auto first = firstFrame(stream, readAdtsFrameHeader);
    // Without a number the channels are described inside the first frame.
    if (!first || first->header.channels == 0)
        return std::nullopt;
    AudioFacts facts = factsOf(first->header);
    const auto scan = scanFrames(stream, first->offset, first->header, readAdtsFrameHeader);
    if (!scan || scan->share < kLeastShare)
        return std::nullopt;
    addScanned(facts, *scan, first->header);
    return facts;
}

} // namespace ostrelle
