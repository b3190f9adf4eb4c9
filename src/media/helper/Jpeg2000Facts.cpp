#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"

#include <openjpeg.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>

namespace ostrelle {
namespace {

using namespace std::literals;

/// Most headers are shorter.
constexpr OPJ_SIZE_T kBufferSize = 16 * 1024;

struct DestroyStream
{
    void operator()(opj_stream_t *stream) const { opj_stream_destroy(stream); }
};
struct DestroyCodec
{
    void operator()(opj_codec_t *codec) const { opj_destroy_codec(codec); }
};
struct DestroyImage
{
    void operator()(opj_image_t *image) const { opj_image_destroy(image); }
};
using Stream = std::unique_ptr<opj_stream_t, DestroyStream>;

ByteReader &readerOf(void *data)
{
    return *static_cast<ByteReader *>(data);
}

OPJ_SIZE_T readBytes(void *buffer, OPJ_SIZE_T size, void *data)
{
    const std::size_t count = readerOf(data).read({static_cast<std::uint8_t *>(buffer), size});
    return count > 0 ? count : static_cast<OPJ_SIZE_T>(-1);
}

OPJ_OFF_T skipBytes(OPJ_OFF_T count, void *data)
{
    ByteReader &reader = readerOf(data);
    const std::uint64_t left = reader.source().size() - std::min(reader.position(), reader.source().size());
    if (count < 0 || static_cast<std::uint64_t>(count) > left)
        return -1;
    reader.seek(reader.position() + static_cast<std::uint64_t>(count));
    return count;
}

OPJ_BOOL seekTo(OPJ_OFF_T position, void *data)
{
    ByteReader &reader = readerOf(data);
    if (position < 0 || static_cast<std::uint64_t>(position) > reader.source().size())
        return OPJ_FALSE;
    reader.seek(static_cast<std::uint64_t>(position));
    return OPJ_TRUE;
}

Stream openedStream(ByteReader &reader)
{
    Stream stream(opj_stream_create(kBufferSize, OPJ_TRUE));
    if (stream) {
        opj_stream_set_user_data(stream.get(), &reader, nullptr);
        opj_stream_set_user_data_length(stream.get(), reader.source().size());
        opj_stream_set_read_function(stream.get(), readBytes);
        opj_stream_set_skip_function(stream.get(), skipBytes);
        opj_stream_set_seek_function(stream.get(), seekTo);
    }
    return stream;
}

bool isBareCodestream(ByteSource &source)
{
    std::array<std::uint8_t, 2> head{};
    return readWhole(source, 0, head) && asText(head) == "\xff\x4f"sv;
}

std::string_view modelOf(const opj_image_t &image)
{
    switch (image.color_space) {
    case OPJ_CLRSPC_GRAY:
        return color_model::kGray;
    case OPJ_CLRSPC_CMYK:
        return color_model::kCmyk;
    default:
        return image.numcomps <= 2 ? color_model::kGray : color_model::kRgb;
    }
}

} // namespace

std::optional<ImageFacts> readJpeg2000Facts(ByteSource &source)
{
    ByteReader reader(source);
    const auto stream = openedStream(reader);
    const std::unique_ptr<opj_codec_t, DestroyCodec> codec(
        opj_create_decompress(isBareCodestream(source) ? OPJ_CODEC_J2K : OPJ_CODEC_JP2));
    opj_dparameters_t parameters{};
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t *found = nullptr;
    if (!stream || !codec || opj_setup_decoder(codec.get(), &parameters) == OPJ_FALSE ||
        opj_read_header(stream.get(), codec.get(), &found) == OPJ_FALSE)
        return std::nullopt;
    const std::unique_ptr<opj_image_t, DestroyImage> image(found);
    if (image->numcomps == 0 || image->x1 <= image->x0 || image->y1 <= image->y0)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "JP2";
    facts.width = image->x1 - image->x0;
    facts.height = image->y1 - image->y0;
    facts.model = modelOf(*image);
    facts.bitDepth = static_cast<int>(image->comps[0].prec);
    const OPJ_UINT32 colors = facts.model == color_model::kGray ? 1 : facts.model == color_model::kCmyk ? 4 : 3;
    // Which component is alpha is told with the pixels only; one more than the colors need is.
    facts.hasAlpha = image->numcomps == colors + 1;
    if (image->icc_profile_buf)
        facts.icc.assign(image->icc_profile_buf, image->icc_profile_buf + image->icc_profile_len);
    return facts;
}

} // namespace ostrelle
