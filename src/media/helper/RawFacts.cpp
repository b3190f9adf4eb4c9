#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/RawStream.h"
#include "media_helper/TiffDirectory.h"

#include <array>
#include <bit>
#include <cmath>
#include <memory>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kHeadBytes = 16;

struct Maker
{
    std::string_view name; ///< as LibRaw writes it
    std::string_view format;
};

constexpr std::array kMakers{
    Maker{"Nikon"sv, "NEF"sv},     Maker{"Sony"sv, "ARW"sv},       Maker{"Fujifilm"sv, "RAF"sv},
    Maker{"Olympus"sv, "ORF"sv},   Maker{"OM Digital"sv, "ORF"sv}, Maker{"Panasonic"sv, "RW2"sv},
    Maker{"Leica"sv, "RWL"sv},     Maker{"Pentax"sv, "PEF"sv},     Maker{"Ricoh"sv, "PEF"sv},
    Maker{"Samsung"sv, "SRW"sv},   Maker{"Minolta"sv, "MRW"sv},    Maker{"Konica"sv, "MRW"sv},
    Maker{"Kodak"sv, "DCR"sv},     Maker{"Sigma"sv, "X3F"sv},      Maker{"Hasselblad"sv, "3FR"sv},
    Maker{"Phase One"sv, "IIQ"sv}, Maker{"Epson"sv, "ERF"sv},      Maker{"Mamiya"sv, "MEF"sv},
    Maker{"Leaf"sv, "MOS"sv},
};

std::string_view canonFormat(std::string_view head)
{
    if (head.substr(4, 8) == "ftypcrx "sv)
        return "CR3";
    return head.substr(8, 2) == "CR"sv ? "CR2" : "CRW";
}

std::string_view formatOf(const libraw_iparams_t &camera, std::string_view head)
{
    if (camera.dng_version != 0)
        return "DNG";
    if (const std::string_view mark = head.substr(8, 4); mark == "IIII"sv || mark == "MMMM"sv)
        return "IIQ";
    const std::string_view make(camera.make);
    if (make == "Canon"sv)
        return canonFormat(head);
    for (const Maker &maker : kMakers) {
        if (make.starts_with(maker.name))
            return maker.format;
    }
    return "RAW";
}

struct Size
{
    std::int64_t width = 0;
    std::int64_t height = 0;
};

/// Of a DNG file, whose sensor image is in the first directory or below it.
std::optional<Size> cropOfDng(const TiffDirectory &first)
{
    std::vector<TiffDirectory> directories = first.below();
    directories.push_back(first);
    for (const TiffDirectory &directory : directories) {
        const double width = directory.real(tiff_tag::kDefaultCropSize, 0).value_or(0);
        const double height = directory.real(tiff_tag::kDefaultCropSize, 1).value_or(0);
        const bool isWhole = directory.number(tiff_tag::kNewSubfileType).value_or(0) == 0;
        const auto isWithin = [&directory](double side, std::uint16_t tag) {
            return side >= 1 && side <= static_cast<double>(directory.number(tag).value_or(0));
        };
        if (isWhole && isWithin(width, tiff_tag::kImageWidth) && isWithin(height, tiff_tag::kImageLength))
            return Size{std::llround(width), std::llround(height)};
    }
    return std::nullopt;
}

/// The picture that the camera means, where it tells that: without the border that is only there to develop it.
Size sizeOf(const libraw_image_sizes_t &sizes)
{
    constexpr int kUntold = 0xffff;
    const libraw_raw_inset_crop_t &crop = sizes.raw_inset_crop;
    const bool isTold = crop.cwidth > 0 && crop.cheight > 0 && crop.cwidth < kUntold && crop.cheight < kUntold;
    // A part of it only, in some modes of some cameras.
    const bool isNearlyAll = 2 * crop.cwidth >= sizes.raw_width && 2 * crop.cheight >= sizes.raw_height;
    return isTold && isNearlyAll ? Size{crop.cwidth, crop.cheight} : Size{sizes.width, sizes.height};
}

/// Of models that LibRaw cannot open it tells no more than the size that the file names, if that.
enum class Unopened { Accepted, Refused };

std::optional<ImageFacts> factsOf(ByteSource &source, Unopened unopened)
{
    std::array<std::uint8_t, kHeadBytes> head{};
    const std::string_view text = asText(ByteSpan(head).first(source.readAt(0, head)));
    RawStream stream(source);
    const auto raw = std::make_unique<LibRaw>();
    const bool isOpen = raw->open_datastream(&stream) == LIBRAW_SUCCESS;
    const libraw_data_t &camera = raw->imgdata;
    // Most are a TIFF structure from their first byte on.
    const auto directory = TiffDirectory::first(source);
    const auto crop = directory && camera.idata.dng_version != 0 ? cropOfDng(*directory) : std::nullopt;
    const Size size = crop.value_or(sizeOf(camera.sizes));
    const bool isNamed = size.width > 0 && camera.idata.make[0] != 0;
    if (!isOpen && (unopened == Unopened::Refused || !isNamed))
        return std::nullopt;
    ImageFacts facts;
    facts.format = formatOf(camera.idata, text);
    facts.width = size.width;
    facts.height = size.height;
    facts.model = color_model::kRgb;
    // Sensors count up to a power of two.
    if (camera.color.maximum > 0)
        facts.bitDepth = static_cast<int>(std::bit_width(camera.color.maximum));
    if (directory)
        facts.dpi = directory->dpi();
    return facts;
}

} // namespace

std::optional<ImageFacts> readRawFacts(ByteSource &source)
{
    return factsOf(source, Unopened::Accepted);
}

std::optional<ImageFacts> readRawOrTiffFacts(ByteSource &source)
{
    auto facts = factsOf(source, Unopened::Refused);
    return facts ? std::move(facts) : readAnyTiffFacts(source);
}

} // namespace ostrelle
