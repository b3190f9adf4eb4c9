#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"

#include <algorithm>
#include <array>
#include <bit>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kHeadBytes = 256 * 1024;
constexpr std::size_t kMagicAndVersion = 8;
constexpr std::size_t kBox = 16;

/// Reads the header's attributes one after the other; nothing beyond its end.
class Attributes
{
public:
    explicit Attributes(ByteSpan bytes)
        : m_bytes(bytes)
    {
    }

    std::string_view text()
    {
        const std::string_view rest = asText(m_bytes);
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        take(std::min(end + 1, rest.size()));
        return rest.substr(0, end);
    }
    ByteSpan take(std::size_t size)
    {
        const ByteSpan part = m_bytes.first(std::min(size, m_bytes.size()));
        m_bytes = m_bytes.subspan(part.size());
        return part;
    }

private:
    ByteSpan m_bytes;
};

void takeChannels(ByteSpan list, ImageFacts &facts)
{
    constexpr std::size_t kChannelFields = 16;
    Attributes channels(list);
    bool isColor = false;
    for (std::string_view name = channels.text(); !name.empty(); name = channels.text()) {
        const ByteSpan fields = channels.take(kChannelFields);
        const bool isLayer = name.find('.') != std::string_view::npos;
        if (fields.size() < kChannelFields || isLayer)
            continue;
        constexpr std::uint64_t kHalf = 1;
        if (name == "A"sv)
            facts.hasAlpha = true;
        else
            facts.bitDepth = littleEndian(fields.first(4)) == kHalf ? 16 : 32;
        isColor = isColor || name == "R"sv || name == "RY"sv || name == "BY"sv;
    }
    facts.model = isColor ? color_model::kRgb : color_model::kGray;
}

void takeSize(ByteSpan box, ImageFacts &facts)
{
    const auto corner = [&](std::size_t i) {
        return std::int64_t(static_cast<std::int32_t>(littleEndian(box.subspan(4 * i, 4))));
    };
    facts.width = corner(2) - corner(0) + 1;
    facts.height = corner(3) - corner(1) + 1;
}

} // namespace

/// OpenEXR file layout: attributes of name, type, size and value up to an empty name.
std::optional<ImageFacts> readExrFacts(ByteSource &source)
{
    std::vector<std::uint8_t> head(kHeadBytes);
    head.resize(source.readAt(0, head));
    Attributes header(ByteSpan(head).subspan(std::min(kMagicAndVersion, head.size())));
    ImageFacts facts;
    facts.format = "EXR";
    for (std::string_view name = header.text(); !name.empty(); name = header.text()) {
        header.text();
        const ByteSpan length = header.take(4);
        const ByteSpan value = header.take(static_cast<std::size_t>(littleEndian(length)));
        if (name == "channels"sv)
            takeChannels(value, facts);
        else if (name == "dataWindow"sv && value.size() == kBox)
            takeSize(value, facts);
        else if (name == "xDensity"sv && value.size() == 4)
            facts.dpi = std::bit_cast<float>(static_cast<std::uint32_t>(littleEndian(value)));
    }
    return facts;
}

} // namespace ostrelle
