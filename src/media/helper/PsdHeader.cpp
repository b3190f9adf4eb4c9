#include "media_helper/PsdHeader.h"

#include "media_helper/ByteSource.h"

#include <span>

namespace ostrelle {
namespace {

constexpr std::uint64_t kIccResource = 1039;
constexpr std::uint64_t kLongestIcc = 4U << 20U;
constexpr int kMostResources = 1000;
constexpr int kMostChannels = 56;
constexpr int kLongestSide = 300'000;

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

void readIcc(Fields &fields, std::uint64_t end, std::vector<std::uint8_t> &icc)
{
    for (int resources = 0; resources < kMostResources && fields.position() < end && !fields.isCut(); ++resources) {
        fields.number(4); // "8BIM"
        const std::uint64_t id = fields.number(2);
        // A name with its length before it, together filled up to an even size.
        const std::uint64_t name = fields.number(1);
        fields.seek(fields.position() + (name | 1U));
        const std::uint64_t size = fields.number(4);
        const std::uint64_t begin = fields.position();
        if (id == kIccResource && size <= kLongestIcc) {
            icc.resize(static_cast<std::size_t>(size));
            fields.take(icc);
            return;
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

bool isTold(const PsdHeader &header, int mode, int bits, int packing)
{
    const bool isKnownMode = (mode >= 1 && mode <= 4) || mode == 8;
    const bool isKnownDepth = bits == 8 || (bits == 16 && mode != 2);
    const int colours = mode == 3 ? 3 : mode == 4 ? 4 : 1;
    return isKnownMode && isKnownDepth && packing <= 1 && header.channels >= colours &&
           header.channels <= kMostChannels && header.width >= 1 && header.width <= kLongestSide &&
           header.height >= 1 && header.height <= kLongestSide;
}

} // namespace

std::optional<PsdHeader> readPsdHeader(ByteSource &source)
{
    Fields fields(source);
    PsdHeader header;
    fields.seek(4);
    const int version = fields.integer(2);
    header.isLarge = version == 2;
    fields.seek(fields.position() + 6);
    header.channels = fields.integer(2);
    header.height = fields.integer(4);
    header.width = fields.integer(4);
    const int bits = fields.integer(2);
    const int mode = fields.integer(2);

    const std::uint64_t colours = sectionEnd(fields);
    if (colours - fields.position() == header.palette.size())
        fields.take(header.palette);
    fields.seek(colours);
    const std::uint64_t resources = sectionEnd(fields);
    readIcc(fields, resources, header.icc);
    fields.seek(resources);
    const int lengthBytes = header.isLarge ? 8 : 4;
    const std::uint64_t layers = sectionEnd(fields, lengthBytes);
    if (layers > fields.position())
        header.isTransparent = isMergedTransparent(fields, layers, lengthBytes);
    fields.seek(layers);
    const int packing = fields.integer(2);
    if (fields.isCut() || version < 1 || version > 2 || !isTold(header, mode, bits, packing))
        return std::nullopt;
    header.bytesPerValue = bits / 8;
    header.mode = static_cast<PsdHeader::Mode>(mode);
    header.packing = static_cast<PsdHeader::Packing>(packing);
    header.pixels = fields.position();
    return header;
}

} // namespace ostrelle
