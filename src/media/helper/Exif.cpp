#include "media_helper/Exif.h"

#include "media_helper/ByteFields.h"
#include "media_helper/TiffDirectory.h"

namespace ostrelle {

ExifFacts exifFacts(std::span<const std::uint8_t> exif)
{
    using namespace std::literals;
    constexpr auto kMarker = "Exif\0\0"sv;
    if (asText(exif).starts_with(kMarker))
        exif = exif.subspan(kMarker.size());
    MemorySource source(exif);
    ExifFacts facts;
    const auto directory = TiffDirectory::first(source);
    if (!directory)
        return facts;
    const auto orientation = directory->number(tiff_tag::kOrientation).value_or(0);
    if (orientation >= 1 && orientation <= 8)
        facts.orientation = static_cast<int>(orientation);
    facts.dpi = directory->dpi();
    return facts;
}

} // namespace ostrelle
