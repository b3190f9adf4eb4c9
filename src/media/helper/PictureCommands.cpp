#include "media_helper/PictureCommands.h"

#include "media_common/PngEncoder.h"
#include "media_helper/ByteSource.h"
#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace ostrelle {
namespace {

/// A thumbnail is made row by row, so this bounds only the time.
constexpr std::int64_t kThumbnailPixels = 500'000'000;
/// A whole picture is in memory more than once while it is converted.
constexpr std::int64_t kConvertedPixels = 40'000'000;
/// Screenshots shrink well at any level; a higher one costs more than it saves.
constexpr int kConversionCompression = 4;

CommandAnswer failure(HelperStatus status)
{
    CommandAnswer answer;
    answer.header.status = status;
    return answer;
}

HelperStatus decode(ByteSource &source, std::string_view ending, PictureBuilder &builder, const DecoderTable &decoders)
{
    std::array<std::uint8_t, kSniffedBytes> head{};
    const FileKind kind = sniffedKind({head.data(), source.readAt(0, head)}, ending);
    const auto row = std::find_if(decoders.rows.begin(), decoders.rows.end(),
                                  [kind](const DecoderRow &candidate) { return candidate.kind == kind; });
    if (row != decoders.rows.end())
        return row->decode(source, builder);
    const bool isForOthers = decoders.others == UnknownKinds::Decline && kind != FileKind::Unknown;
    return isForOthers ? HelperStatus::Declined : HelperStatus::Unsupported;
}

void setSizes(HelperAnswer &header, PixelSize picture, PixelSize source)
{
    header.width = static_cast<std::uint32_t>(picture.width);
    header.height = static_cast<std::uint32_t>(picture.height);
    header.sourceWidth = static_cast<std::uint32_t>(source.width);
    header.sourceHeight = static_cast<std::uint32_t>(source.height);
}

void premultiply(Raster &picture)
{
    for (std::size_t i = 0; i < picture.bytes.size(); i += 4) {
        const unsigned alpha = picture.bytes[i + 3];
        for (std::size_t c = 0; c < 3 && alpha < 255; ++c)
            picture.bytes[i + c] = static_cast<std::uint8_t>((picture.bytes[i + c] * alpha + 127) / 255);
    }
}

} // namespace

CommandAnswer answerThumbnail(ByteSource &source, const HelperRequest &request, const DecoderTable &decoders)
{
    const std::uint32_t decodedSide = std::max(request.side, request.cacheSide);
    if (request.side == 0 || decodedSide > kLongestThumbnailSide)
        return failure(HelperStatus::Unsupported);
    PictureBuilder builder(
        {.side = static_cast<int>(decodedSide), .isSquare = request.isSquare != 0, .pixelLimit = kThumbnailPixels});
    const HelperStatus status = decode(source, request.extension.data(), builder, decoders);
    if (status != HelperStatus::Done)
        return failure(status);
    const Raster large = builder.take();
    Raster small = shrunk(large, static_cast<int>(request.side));
    premultiply(small);
    CommandAnswer answer;
    setSizes(answer.header, small.size, builder.sourceSize());
    answer.payload = std::move(small.bytes);
    if (request.cacheSide > 0) {
        answer.header.cacheWidth = static_cast<std::uint32_t>(large.size.width);
        answer.header.cacheHeight = static_cast<std::uint32_t>(large.size.height);
        answer.payload.insert(answer.payload.end(), large.bytes.begin(), large.bytes.end());
    }
    return answer;
}

CommandAnswer answerToPng(ByteSource &source, const HelperRequest &request, const DecoderTable &decoders)
{
    PictureBuilder builder({.side = 0, .isSquare = false, .pixelLimit = kConvertedPixels});
    const HelperStatus status = decode(source, request.extension.data(), builder, decoders);
    if (status != HelperStatus::Done)
        return failure(status);
    const Raster picture = builder.take();
    PngOptions options;
    options.alpha = PngAlpha::DropWhenOpaque;
    options.compression = kConversionCompression;
    options.byteLimit = request.outputLimit;
    auto png = encodePng({picture.size.width, picture.size.height, picture.bytes.data()}, options);
    if (!png)
        return failure(HelperStatus::TooLarge);
    CommandAnswer answer;
    setSizes(answer.header, picture.size, builder.sourceSize());
    answer.payload = std::move(*png);
    return answer;
}

} // namespace ostrelle
