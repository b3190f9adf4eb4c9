#include "media_helper/FrameScan.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr std::size_t kReadForFirst = 256 * 1024;
constexpr std::uint64_t kReadWhole = 3U << 20U;
constexpr std::size_t kParts = 48;
constexpr std::size_t kPartSize = 60 * 1024;
/// Read behind each part, so that the last frame that begins in it is whole: none is longer.
constexpr std::size_t kLongestFrame = 8 * 1024;

class Totals
{
public:
    Totals(const AudioFrameHeader &model, ReadFrameHeader &readHeader)
        : m_model(model)
        , m_readHeader(readHeader)
    {
    }

    /// Of the frames that begin before `end` only the whole ones count, for a player can do nothing with others.
    void add(std::span<const std::uint8_t> bytes, std::size_t end)
    {
        bool isInStep = false;
        const std::size_t rest = bytes.size() - std::min(bytes.size(), end);
        while (bytes.size() >= rest + kFrameHeaderBytes) {
            const auto header = m_readHeader(bytes);
            const bool isOurs = header && header->signature == m_model.signature && header->byteSize <= bytes.size() &&
                                (isInStep || beginsWithFrames(bytes, m_readHeader));
            if (isOurs)
                count(*header);
            isInStep = isOurs;
            bytes = bytes.subspan(isOurs ? header->byteSize : 1);
        }
    }

    double frames() const { return static_cast<double>(m_frames); }
    double bytes() const { return static_cast<double>(m_bytes); }
    double bytesPerFrame() const { return m_frames > 0 ? bytes() / frames() : 0; }
    unsigned bitRate() const { return m_leastBitRate == m_mostBitRate ? m_mostBitRate : 0; }

private:
    void count(const AudioFrameHeader &header)
    {
        m_leastBitRate = m_frames == 0 ? header.bitRate : std::min(m_leastBitRate, header.bitRate);
        m_mostBitRate = std::max(m_mostBitRate, header.bitRate);
        ++m_frames;
        m_bytes += header.byteSize;
    }

    const AudioFrameHeader &m_model;
    ReadFrameHeader &m_readHeader;
    std::uint64_t m_frames = 0;
    std::uint64_t m_bytes = 0;
    unsigned m_leastBitRate = 0;
    unsigned m_mostBitRate = 0;
};

} // namespace

std::optional<PlacedFrame> firstFrame(ByteSource &source, ReadFrameHeader &readHeader)
{
    std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(source.size(), kReadForFirst));
    bytes.resize(source.readAt(0, bytes));
    const std::span<const std::uint8_t> all(bytes);
    for (std::size_t at = 0; at + kFrameHeaderBytes <= all.size(); ++at) {
        if (beginsWithFrames(all.subspan(at), readHeader))
            return PlacedFrame{at, *readHeader(all.subspan(at))};
    }
    return std::nullopt;
}

std::optional<FrameScan> scanFrames(ByteSource &source, std::uint64_t begin, const AudioFrameHeader &model,
                                    ReadFrameHeader &readHeader)
{
    const std::uint64_t size = source.size() - std::min(begin, source.size());
    const bool isWhole = size <= kReadWhole;
    Totals totals(model, readHeader);
    std::vector<std::uint8_t> bytes;
    std::uint64_t looked = 0;
    const std::size_t parts = isWhole ? 1 : kParts;
    for (std::size_t part = 0; part < parts; ++part) {
        bytes.resize(isWhole ? size : kPartSize + kLongestFrame);
        bytes.resize(source.readAt(begin + size / parts * part, bytes));
        totals.add(bytes, isWhole ? size : kPartSize);
        looked += std::min<std::uint64_t>(bytes.size(), isWhole ? size : kPartSize);
    }
    if (totals.frames() == 0)
        return std::nullopt;
    FrameScan scan{totals.frames(), totals.bytesPerFrame(), totals.bitRate(),
                   totals.bytes() / static_cast<double>(looked)};
    // Of frames of one bit rate every few are a byte longer, so that the mean is exact.
    if (scan.bitRate > 0)
        scan.bytesPerFrame = static_cast<double>(model.samples) / 8 * scan.bitRate / model.sampleRate;
    if (!isWhole)
        scan.frames = static_cast<double>(size) / scan.bytesPerFrame;
    return scan;
}

} // namespace ostrelle
