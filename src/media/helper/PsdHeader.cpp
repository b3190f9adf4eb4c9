#include "media_helper/PsdHeader.h"

#include "media_helper/ByteSource.h"

#include <span>

namespace ostrelle {
namespace {

constexpr std::uint64_t kResolutionResource = 1005;
constexpr std::uint64_t kIccResource = 1039;
constexpr std::uint64_t kLongestIcc = 4U << 20U;
constexpr int kMostResources = 1000;

/// Fields in the order of the file, the most significant byte first. What lies beyond the end is 0, and told.
class Fields
{
public:
    explicit Fields(ByteSource &source)
        : m_reader(source)
    {
    }
    std::uint64_t number(int bytes)
    {
        std::array<std::uint8_t, 8> field{};
        take(std::span(field).first(static_cast<std::size_t>(bytes)));
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value = value << 8U | field[static_cast<std::size_t>(i)];
        return value;
    }
    int integer(int bytes) { return static_cast<int>(number(bytes)); }
    void take(std::span<std::uint8_t> field) { m_isCut = m_reader.read(field) < field.size() || m_isCut; }
    std::uint64_t position() const { return m_reader.position(); }
    void seek(std::uint64_t position) { m_reader.seek(position); }
    bool isCut() const { return m_isCut; }

private:
    ByteReader m_reader;
    bool m_isCut = false;
};

/// Returns where the section ends.
std::uint64_t sectionEnd(Fields &fields, int lengthBytes = 4)
{
    const std::uint64_t length = fields.number(lengthBytes);
    return fields.position() + length;
}

/// The image resources, one after the other. Their marks differ between programs.
void takeResources(Fields &fields, std::uint64_t end, PsdHeader &header)
{
    for (int resources = 0; resources < kMostResources && fields.position() < end && !fields.isCut(); ++resources) {
        fields.number(4);
        const std::uint64_t id = fields.number(2);
        // A name with its length before it, together filled up to an even size.
        const std::uint64_t name = fields.number(1);
        fields.seek(fields.position() + (name | 1U));
        const std::uint64_t size = fields.number(4);
        const std::uint64_t begin = fields.position();
        if (id == kResolutionResource && size >= 4) {
            // Pixels per inch with 16 bits of fraction, whatever unit it is shown in.
            header.dpi = static_cast<double>(fields.number(4)) / 65536;
        } else if (id == kIccResource && size <= kLongestIcc && header.icc.empty()) {
            header.icc.resize(static_cast<std::size_t>(size));
            fields.take(header.icc);
        }
        fields.seek(begin + size + size % 2);
    }
}

/// A negative number of layers says that the merged picture is transparent.
bool isMergedTransparent(Fields &fields, std::uint64_t end, int lengthBytes)
{
    const bool hasLayers = sectionEnd(fields, lengthBytes) > fields.position() && fields.position() < end;
    return hasLayers && (fields.number(2) & 0x8000U) != 0;
}

} // namespace

std::optional<PsdHeader> readPsdHeader(ByteSource &source)
{
    constexpr std::uint64_t kMark = 0x38425053; // "8BPS"
    Fields fields(source);
    PsdHeader header;
    const bool isMarked = fields.number(4) == kMark;
    const int version = fields.integer(2);
    header.isLarge = version == 2;
    fields.seek(fields.position() + 6);
    header.channels = fields.integer(2);
    header.height = static_cast<std::int64_t>(fields.number(4));
    header.width = static_cast<std::int64_t>(fields.number(4));
    header.bits = fields.integer(2);
    header.mode = static_cast<PsdHeader::Mode>(fields.integer(2));
    if (!isMarked || version < 1 || version > 2 || fields.isCut())
        return std::nullopt;

    const std::uint64_t colours = sectionEnd(fields);
    if (colours - fields.position() == header.palette.size())
        fields.take(header.palette);
    fields.seek(colours);
    const std::uint64_t resources = sectionEnd(fields);
    takeResources(fields, resources, header);
    fields.seek(resources);
    const int lengthBytes = header.isLarge ? 8 : 4;
    const std::uint64_t layers = sectionEnd(fields, lengthBytes);
    if (layers > fields.position())
        header.isTransparent = isMergedTransparent(fields, layers, lengthBytes);
    fields.seek(layers);
    header.packing = static_cast<PsdHeader::Packing>(fields.integer(2));
    header.pixels = fields.position();
    header.isCut = fields.isCut();
    return header;
}

} // namespace ostrelle
