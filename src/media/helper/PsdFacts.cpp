#include "media_helper/ImageFacts.h"
#include "media_helper/PsdHeader.h"

#include <utility>

namespace ostrelle {
namespace {

std::string_view modelOf(PsdHeader::Mode mode)
{
    using Mode = PsdHeader::Mode;
    switch (mode) {
    case Mode::Bitmap:
    case Mode::Gray:
    case Mode::Duotone:
        return color_model::kGray;
    case Mode::Indexed:
    case Mode::Rgb:
        return color_model::kRgb;
    case Mode::Cmyk:
        return color_model::kCmyk;
    case Mode::Lab:
        return color_model::kLab;
    case Mode::Multichannel: // as many inks as there are
        break;
    }
    return {};
}

} // namespace

std::optional<ImageFacts> readPsdFacts(ByteSource &source)
{
    std::optional<PsdHeader> header = readPsdHeader(source);
    if (!header)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "PSD";
    facts.width = header->width;
    facts.height = header->height;
    facts.model = modelOf(header->mode);
    facts.icc = std::move(header->icc);
    facts.bitDepth = header->bits;
    facts.dpi = header->dpi;
    facts.hasAlpha = header->isTransparent;
    return facts;
}

} // namespace ostrelle
