#include "media_helper/ByteFields.h"
#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"

#include <webp/decode.h>

#include <array>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::size_t kChunkHeader = 8;
constexpr std::size_t kLongestChunk = 4U << 20U;
constexpr int kMostChunks = 1000;
constexpr std::size_t kFeatureBytes = 64;

std::vector<std::uint8_t> chunkAt(ByteSource &source, std::uint64_t offset, std::uint64_t size)
{
    std::vector<std::uint8_t> chunk(size <= kLongestChunk ? static_cast<std::size_t>(size) : 0);
    chunk.resize(source.readAt(offset, chunk));
    return chunk;
}

/// What stands beside the pixels in an extended file (WebP container, RIFF).
void readMetadata(ByteSource &source, ImageFacts &facts)
{
    std::uint64_t offset = kFirstChunk;
    std::array<std::uint8_t, kChunkHeader> header{};
    for (int chunks = 0; chunks < kMostChunks && readWhole(source, offset, header); ++chunks) {
        const std::string_view name = asText(ByteSpan(header).first(4));
        const std::uint64_t size = littleEndian(ByteSpan(header).subspan(4));
        offset += kChunkHeader;
        if (name == "ICCP"sv)
            facts.icc = chunkAt(source, offset, size);
        else if (name == "EXIF"sv)
            facts.dpi = exifFacts(chunkAt(source, offset, size)).dpi;
        offset += size + size % 2;
    }
}

} // namespace

std::optional<ImageFacts> readWebPFacts(ByteSource &source)
{
    std::array<std::uint8_t, kFeatureBytes> head{};
    const std::size_t size = source.readAt(0, head);
    WebPBitstreamFeatures features{};
    if (WebPGetFeatures(head.data(), size, &features) != VP8_STATUS_OK)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "WEBP";
    facts.width = features.width;
    facts.height = features.height;
    facts.model = color_model::kRgb;
    facts.bitDepth = 8;
    facts.hasAlpha = features.has_alpha != 0;
    if (asText(head).substr(kFirstChunk, 4) == "VP8X"sv)
        readMetadata(source, facts);
    return facts;
}

} // namespace ostrelle
