#include "media_helper/ByteFields.h"
#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/Mp4Boxes.h"

#include <jxl/decode.h>

#include <algorithm>
#include <array>
#include <memory>

namespace ostrelle {
namespace {

constexpr std::size_t kPortion = 64 * 1024;

struct DestroyDecoder
{
    void operator()(JxlDecoder *decoder) const { JxlDecoderDestroy(decoder); }
};

/// The profile that the file carries, not one that is made up from its color encoding.
std::vector<std::uint8_t> embeddedIcc(const JxlDecoder *decoder)
{
    constexpr auto kTarget = JXL_COLOR_PROFILE_TARGET_ORIGINAL;
    std::size_t size = 0;
    if (JxlDecoderGetColorAsEncodedProfile(decoder, nullptr, kTarget, nullptr) == JXL_DEC_SUCCESS ||
        JxlDecoderGetICCProfileSize(decoder, nullptr, kTarget, &size) != JXL_DEC_SUCCESS)
        return {};
    std::vector<std::uint8_t> icc(size);
    if (JxlDecoderGetColorAsICCProfile(decoder, nullptr, kTarget, icc.data(), size) != JXL_DEC_SUCCESS)
        return {};
    return icc;
}

void takeInfo(const JxlBasicInfo &info, ImageFacts &facts)
{
    facts.width = info.xsize;
    facts.height = info.ysize;
    facts.model = info.num_color_channels == 1 ? color_model::kGray : color_model::kRgb;
    facts.bitDepth = static_cast<int>(info.bits_per_sample);
    facts.hasAlpha = info.alpha_bits > 0;
}

/// Gives the decoder what follows in the file; false at its end.
bool feed(JxlDecoder *decoder, ByteReader &bytes, std::vector<std::uint8_t> &input)
{
    const std::size_t left = JxlDecoderReleaseInput(decoder);
    input.erase(input.begin(), input.end() - static_cast<std::ptrdiff_t>(left));
    input.resize(left + kPortion);
    const std::size_t count = bytes.read(std::span(input).subspan(left));
    input.resize(left + count);
    return count > 0 && JxlDecoderSetInput(decoder, input.data(), input.size()) == JXL_DEC_SUCCESS;
}

std::optional<ImageFacts> streamFacts(ByteSource &source)
{
    const std::unique_ptr<JxlDecoder, DestroyDecoder> decoder(JxlDecoderCreate(nullptr));
    if (!decoder)
        return std::nullopt;
    JxlDecoderSetKeepOrientation(decoder.get(), JXL_TRUE);
    JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_BASIC_INFO | JXL_DEC_COLOR_ENCODING);
    ByteReader bytes(source);
    std::vector<std::uint8_t> input;
    ImageFacts facts;
    facts.format = "JXL";
    for (;;) {
        JxlBasicInfo info{};
        switch (JxlDecoderProcessInput(decoder.get())) {
        case JXL_DEC_NEED_MORE_INPUT:
            if (!feed(decoder.get(), bytes, input))
                return facts;
            break;
        case JXL_DEC_BASIC_INFO:
            if (JxlDecoderGetBasicInfo(decoder.get(), &info) != JXL_DEC_SUCCESS)
                return std::nullopt;
            takeInfo(info, facts);
            break;
        case JXL_DEC_COLOR_ENCODING:
            facts.icc = embeddedIcc(decoder.get());
            return facts;
        default:
            return facts;
        }
    }
}

/// Of the boxes beside the picture (ISO/IEC 18181-2); one that is packed is passed over.
std::optional<double> exifDpi(ByteSource &source)
{
    constexpr std::uint64_t kLargestExif = 4U << 20U;
    constexpr std::uint64_t kOffsetSize = 4; // says how many bytes more lie before the structure
    const auto box = Mp4Walk(source, 0, source.size()).next("Exif");
    if (!box || box->end - box->begin > kLargestExif || box->end - box->begin < kOffsetSize)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(box->end - box->begin));
    bytes.resize(source.readAt(box->begin, bytes));
    const std::uint64_t begin = kOffsetSize + bigEndian(ByteSpan(bytes).first(std::min(bytes.size(), kOffsetSize)));
    return begin < bytes.size() ? exifFacts(ByteSpan(bytes).subspan(static_cast<std::size_t>(begin))).dpi
                                : std::nullopt;
}

} // namespace

std::optional<ImageFacts> readJpegXlFacts(ByteSource &source)
{
    auto facts = streamFacts(source);
    // A stream without boxes begins with its own mark.
    std::array<std::uint8_t, 1> first{};
    if (facts && readWhole(source, 0, first) && first[0] == 0)
        facts->dpi = exifDpi(source);
    return facts;
}

} // namespace ostrelle
