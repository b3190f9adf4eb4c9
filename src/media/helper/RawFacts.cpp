#include "media_helper/ByteFields.h"
#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/RawStream.h"

#include <array>
#include <bit>
#include <memory>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kHeadBytes = 64 * 1024;

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
    const std::string_view make(camera.make);
    if (make == "Canon"sv)
        return canonFormat(head);
    for (const Maker &maker : kMakers) {
        if (make.starts_with(maker.name))
            return maker.format;
    }
    return "RAW";
}

} // namespace

std::optional<ImageFacts> readRawFacts(ByteSource &source)
{
    std::vector<std::uint8_t> head(kHeadBytes);
    head.resize(source.readAt(0, head));
    RawStream stream(source);
    const auto raw = std::make_unique<LibRaw>();
    if (raw->open_datastream(&stream) != LIBRAW_SUCCESS)
        return std::nullopt;
    ImageFacts facts;
    facts.format = formatOf(raw->imgdata.idata, asText(head));
    facts.width = raw->imgdata.sizes.width;
    facts.height = raw->imgdata.sizes.height;
    facts.model = color_model::kRgb;
    // Sensors count up to a power of two.
    if (raw->imgdata.color.maximum > 0)
        facts.bitDepth = static_cast<int>(std::bit_width(raw->imgdata.color.maximum));
    // Most are a TIFF structure from their first byte on.
    facts.dpi = exifFacts(head).dpi;
    return facts;
}

} // namespace ostrelle
