#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"
#include "media_helper/PsdHeader.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace ostrelle {
namespace {

/// So much at once goes past the source's own window, which channels far apart would only take from each other.
constexpr std::size_t kChunk = 64 * 1024;

/// One channel of the picture, its rows from the top.
class Channel
{
public:
    Channel(ByteSource &source, std::uint64_t begin)
        : m_source(source)
        , m_next(begin)
    {
    }

    /// False when the file ends before.
    bool read(std::span<std::uint8_t> row)
    {
        for (std::size_t done = 0; done < row.size();) {
            if (!fill())
                return false;
            const std::size_t count = std::min(row.size() - done, m_buffer.size() - m_used);
            std::memcpy(row.data() + done, m_buffer.data() + m_used, count);
            m_used += count;
            done += count;
        }
        return true;
    }

private:
    bool fill()
    {
        if (m_used < m_buffer.size())
            return true;
        m_buffer.resize(kChunk);
        m_buffer.resize(m_source.readAt(m_next, m_buffer));
        m_next += m_buffer.size();
        m_used = 0;
        return !m_buffer.empty();
    }

    ByteSource &m_source;
    std::uint64_t m_next;
    std::vector<std::uint8_t> m_buffer;
    std::size_t m_used = 0;
};

/// PackBits. False when it is not exactly the row; a filling byte at its end does not count.
bool unpack(std::span<const std::uint8_t> packed, std::span<std::uint8_t> row)
{
    std::size_t done = 0;
    for (std::size_t i = 0; i < packed.size() && done < row.size();) {
        const std::uint8_t code = packed[i++];
        if (code == 128)
            continue;
        const std::size_t count = code < 128 ? code + 1U : 257U - code;
        const std::size_t stored = code < 128 ? count : 1;
        if (stored > packed.size() - i || count > row.size() - done)
            return false;
        if (code < 128)
            std::memcpy(row.data() + done, packed.data() + i, count);
        else
            std::memset(row.data() + done, packed[i], count);
        i += stored;
        done += count;
    }
    return done == row.size();
}

std::size_t bytesPerValue(const PsdHeader &header)
{
    return static_cast<std::size_t>(header.bits) / 8;
}

class PsdRows
{
public:
    PsdRows(ByteSource &source, const PsdHeader &header, int channels)
        : m_header(header)
        , m_stored(static_cast<std::size_t>(header.width) * bytesPerValue(header))
    {
        const auto height = static_cast<std::uint64_t>(header.height);
        if (header.packing == PsdHeader::Packing::None) {
            for (int i = 0; i < channels; ++i)
                m_channels.emplace_back(source,
                                        header.pixels + static_cast<std::uint64_t>(i) * height * m_stored.size());
            return;
        }
        // The lengths of the packed rows of all channels stand before them.
        const std::size_t field = header.isLarge ? 4 : 2;
        ByteReader table(source);
        table.seek(header.pixels);
        std::uint64_t begin = header.pixels + static_cast<std::uint64_t>(header.channels) * height * field;
        std::vector<std::uint8_t> fields(static_cast<std::size_t>(height) * field);
        for (int i = 0; i < channels; ++i) {
            fields.resize(table.read(fields));
            m_channels.emplace_back(source, begin);
            std::vector<std::uint32_t> &lengths = m_lengths.emplace_back();
            for (std::size_t at = 0; at + field <= fields.size(); at += field) {
                std::uint32_t length = 0;
                for (std::size_t byte = 0; byte < field; ++byte)
                    length = length << 8U | fields[at + byte];
                lengths.push_back(length);
                begin += length;
            }
        }
    }

    /// One value of eight bits per pixel; null when the file ends before, or is damaged.
    const std::uint8_t *row(std::size_t channel, int y)
    {
        Channel &source = m_channels[channel];
        if (m_header.packing == PsdHeader::Packing::None) {
            if (!source.read(m_stored))
                return nullptr;
        } else {
            const std::vector<std::uint32_t> &lengths = m_lengths[channel];
            const auto index = static_cast<std::size_t>(y);
            // At the worst every other byte is a code.
            if (index >= lengths.size() || lengths[index] > 2 * m_stored.size() + 2)
                return nullptr;
            m_packed.resize(lengths[index]);
            if (!source.read(m_packed) || !unpack(m_packed, m_stored))
                return nullptr;
        }
        // Of sixteen bits the upper eight.
        const std::size_t step = bytesPerValue(m_header);
        for (std::size_t x = 1; step > 1 && x * step < m_stored.size(); ++x)
            m_stored[x] = m_stored[x * step];
        return m_stored.data();
    }

private:
    const PsdHeader &m_header;
    std::vector<Channel> m_channels;
    std::vector<std::vector<std::uint32_t>> m_lengths;
    std::vector<std::uint8_t> m_packed;
    std::vector<std::uint8_t> m_stored;
};

/// Not of one bit, floating point or spot colours, nor packed as ZIP.
bool isDecoded(const PsdHeader &header)
{
    constexpr int kMostChannels = 56;
    constexpr std::int64_t kLongestSide = 300'000;
    using Mode = PsdHeader::Mode;
    const Mode mode = header.mode;
    const bool isKnownMode =
        mode == Mode::Gray || mode == Mode::Indexed || mode == Mode::Rgb || mode == Mode::Cmyk || mode == Mode::Duotone;
    const bool isKnownDepth = header.bits == 8 || (header.bits == 16 && mode != Mode::Indexed);
    const bool isKnownPacking =
        header.packing == PsdHeader::Packing::None || header.packing == PsdHeader::Packing::RunLengths;
    const int colours = mode == Mode::Rgb ? 3 : mode == Mode::Cmyk ? 4 : 1;
    return !header.isCut && isKnownMode && isKnownDepth && isKnownPacking && header.channels >= colours &&
           header.channels <= kMostChannels && header.width >= 1 && header.width <= kLongestSide &&
           header.height >= 1 && header.height <= kLongestSide;
}

PixelLayout layoutOf(const PsdHeader &header)
{
    switch (header.mode) {
    case PsdHeader::Mode::Rgb:
        return header.isTransparent && header.channels > 3 ? PixelLayout::Rgba : PixelLayout::Rgb;
    case PsdHeader::Mode::Cmyk:
        return PixelLayout::InvertedCmyk;
    case PsdHeader::Mode::Indexed:
        return PixelLayout::Rgb;
    default:
        return header.isTransparent && header.channels > 1 ? PixelLayout::GrayAlpha : PixelLayout::Gray;
    }
}

/// One row of pixels out of the rows of the channels; false when one of them is missing.
bool interleave(PsdRows &rows, int y, std::size_t channels, std::vector<std::uint8_t> &pixels)
{
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const std::uint8_t *row = rows.row(channel, y);
        if (!row)
            return false;
        for (std::size_t at = channel; at < pixels.size(); at += channels)
            pixels[at] = *row++;
    }
    return true;
}

bool lookUp(PsdRows &rows, int y, const PsdHeader::Palette &palette, std::vector<std::uint8_t> &pixels)
{
    const std::uint8_t *row = rows.row(0, y);
    for (std::size_t at = 0; row && at < pixels.size(); at += 3, ++row) {
        for (std::size_t c = 0; c < 3; ++c)
            pixels[at + c] = palette[256 * c + *row];
    }
    return row != nullptr;
}

} // namespace

HelperStatus decodePsd(ByteSource &source, PictureBuilder &builder)
{
    const std::optional<PsdHeader> header = readPsdHeader(source);
    if (!header || !isDecoded(*header))
        return HelperStatus::Declined;
    const bool isIndexed = header->mode == PsdHeader::Mode::Indexed;
    PictureFacts facts;
    facts.full = facts.decoded = {static_cast<int>(header->width), static_cast<int>(header->height)};
    facts.layout = layoutOf(*header);
    facts.icc = header->icc;
    const auto channels = static_cast<std::size_t>(channelsOf(facts.layout));
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    PsdRows rows(source, *header, isIndexed ? 1 : static_cast<int>(channels));
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(header->width) * channels);
    for (int y = 0; y < header->height; ++y) {
        if (isIndexed ? !lookUp(rows, y, header->palette, pixels) : !interleave(rows, y, channels, pixels))
            return HelperStatus::Broken;
        builder.addRow(pixels.data());
    }
    return HelperStatus::Done;
}

} // namespace ostrelle
