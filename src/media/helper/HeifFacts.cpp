#include "media_helper/ByteFields.h"
#include "media_helper/Exif.h"
#include "media_helper/HeifReader.h"
#include "media_helper/ImageFacts.h"

#include <array>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kLargestExif = 4U << 20U;
/// The file type box of real files is much shorter.
constexpr std::size_t kTypeBytes = 256;

/// The brands, main and compatible, stand at the very begin (ISO/IEC 14496-12, file type box).
std::string_view formatOf(ByteSource &source)
{
    std::array<std::uint8_t, kTypeBytes> head{};
    const ByteSpan bytes = ByteSpan(head).first(source.readAt(0, head));
    const std::size_t size = bytes.size() < 4 ? 0 : static_cast<std::size_t>(bigEndian(bytes.first(4)));
    const std::string_view box = asText(bytes).substr(0, size);
    for (std::size_t at = 8; at + 4 <= box.size(); at += 4) {
        const std::string_view brand = box.substr(at, 4);
        if (brand == "avif"sv || brand == "avis"sv)
            return "AVIF";
    }
    return "HEIC";
}

std::optional<double> resolutionIn(const heif_image_handle *handle)
{
    heif_item_id item = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(handle, "Exif", &item, 1) < 1)
        return std::nullopt;
    const std::size_t size = heif_image_handle_get_metadata_size(handle, item);
    // The first four bytes say how many more lie before the structure.
    if (size <= 4 || size > kLargestExif)
        return std::nullopt;
    std::vector<std::uint8_t> exif(size);
    if (heif_image_handle_get_metadata(handle, item, exif.data()).code != heif_error_Ok)
        return std::nullopt;
    const std::uint64_t begin = 4 + bigEndian(ByteSpan(exif).first(4));
    return begin < size ? exifFacts(ByteSpan(exif).subspan(static_cast<std::size_t>(begin))).dpi : std::nullopt;
}

} // namespace

std::optional<ImageFacts> readHeifFacts(ByteSource &source)
{
    const HeifFile file(source);
    const heif_image_handle *const handle = file.primary.get();
    if (!handle)
        return std::nullopt;
    ImageFacts facts;
    facts.format = formatOf(source);
    // Before the turns that the file asks for.
    facts.width = heif_image_handle_get_ispe_width(handle);
    facts.height = heif_image_handle_get_ispe_height(handle);
    facts.model = color_model::kRgb;
    facts.icc = heifIcc(handle);
    const int depth = heif_image_handle_get_luma_bits_per_pixel(handle);
    if (depth > 0)
        facts.bitDepth = depth;
    facts.hasAlpha = heif_image_handle_has_alpha_channel(handle) != 0;
    facts.dpi = resolutionIn(handle);
    return facts;
}

} // namespace ostrelle
