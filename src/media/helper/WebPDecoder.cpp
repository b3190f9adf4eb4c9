#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/Exif.h"
#include "media_helper/PictureBuilder.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <utility>

namespace ostrelle {
namespace {

/// More than the largest WebP, 16383 by 16383, has in practice.
constexpr std::uint64_t kLongestFile = 128U << 20U;

struct DeleteDemuxer
{
    void operator()(WebPDemuxer *demuxer) const { WebPDemuxDelete(demuxer); }
};

std::span<const std::uint8_t> chunk(const WebPDemuxer &demuxer, const char *name, WebPChunkIterator &iterator)
{
    if (WebPDemuxGetChunk(&demuxer, name, 1, &iterator) == 0)
        return {};
    return {iterator.chunk.bytes, iterator.chunk.size};
}

/// What stands beside the pixels in an extended file.
void readMetadata(const WebPDemuxer &demuxer, PictureFacts &facts)
{
    WebPChunkIterator iterator{};
    const auto icc = chunk(demuxer, "ICCP", iterator);
    facts.icc.assign(icc.begin(), icc.end());
    WebPDemuxReleaseChunkIterator(&iterator);
    facts.orientation = exifFacts(chunk(demuxer, "EXIF", iterator)).orientation;
    WebPDemuxReleaseChunkIterator(&iterator);
}

/// The picture alone, or the first of an animation.
HelperStatus decodeFrame(std::span<const std::uint8_t> frame, PictureFacts facts, PictureBuilder &builder)
{
    WebPDecoderConfig config{};
    if (WebPInitDecoderConfig(&config) == 0 ||
        WebPGetFeatures(frame.data(), frame.size(), &config.input) != VP8_STATUS_OK)
        return HelperStatus::Broken;
    facts.full = {config.input.width, config.input.height};
    facts.layout = config.input.has_alpha != 0 ? PixelLayout::Rgba : PixelLayout::Rgb;
    // Twice the size wanted: the last step is ours, which is the better filter.
    const double scale = std::min(1.0, 2 * builder.shrinkScale(facts.full));
    const auto scaled = [scale](int length) { return std::max(1, static_cast<int>(std::ceil(length * scale))); };
    facts.decoded = {scaled(facts.full.width), scaled(facts.full.height)};
    const PixelSize decoded = facts.decoded;
    config.options.use_scaling = decoded == facts.full ? 0 : 1;
    config.options.scaled_width = decoded.width;
    config.options.scaled_height = decoded.height;
    config.output.colorspace = facts.layout == PixelLayout::Rgba ? MODE_RGBA : MODE_RGB;
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    const VP8StatusCode status = WebPDecode(frame.data(), frame.size(), &config);
    if (status == VP8_STATUS_OK) {
        for (int row = 0; row < decoded.height; ++row)
            builder.addRow(config.output.u.RGBA.rgba + std::ptrdiff_t(row) * config.output.u.RGBA.stride);
    }
    WebPFreeDecBuffer(&config.output);
    if (status == VP8_STATUS_OUT_OF_MEMORY)
        return HelperStatus::OutOfMemory;
    return status == VP8_STATUS_OK ? HelperStatus::Done : HelperStatus::Broken;
}

} // namespace

HelperStatus decodeWebP(ByteSource &source, PictureBuilder &builder)
{
    const std::vector<std::uint8_t> bytes = source.whole(kLongestFile);
    if (bytes.empty())
        return HelperStatus::TooLarge;
    const WebPData data{bytes.data(), bytes.size()};
    const std::unique_ptr<WebPDemuxer, DeleteDemuxer> demuxer(WebPDemux(&data));
    WebPIterator frame{};
    if (!demuxer || WebPDemuxGetFrame(demuxer.get(), 1, &frame) == 0)
        return HelperStatus::Broken;
    PictureFacts facts;
    readMetadata(*demuxer, facts);
    const HelperStatus status = decodeFrame({frame.fragment.bytes, frame.fragment.size}, std::move(facts), builder);
    WebPDemuxReleaseIterator(&frame);
    return status;
}

} // namespace ostrelle
