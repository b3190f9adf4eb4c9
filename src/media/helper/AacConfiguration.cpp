#include "media_helper/AacConfiguration.h"

#include "media_helper/AudioFrameHeader.h"

namespace ostrelle {
namespace {

// Audio object types.
constexpr unsigned kMain = 1;
constexpr unsigned kLowComplexity = 2;
constexpr unsigned kLongTermPrediction = 4;
constexpr unsigned kBandReplication = 5;
constexpr unsigned kParametricStereo = 29;
constexpr unsigned kEscape = 31;

/// Announce what decoders of the first generation may overlook.
constexpr unsigned kReplicationFollows = 0x2b7;
constexpr unsigned kStereoFollows = 0x548;

class Bits
{
public:
    explicit Bits(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }
    /// Zeros behind the end.
    unsigned take(unsigned count)
    {
        unsigned value = 0;
        for (; count > 0; --count, ++m_at) {
            const unsigned byte = m_at < 8 * m_bytes.size() ? m_bytes[m_at / 8] : 0;
            value = value << 1U | (byte >> (7 - m_at % 8) & 1U);
        }
        return value;
    }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
};

unsigned takeObjectType(Bits &bits)
{
    const unsigned type = bits.take(5);
    return type == kEscape ? 32 + bits.take(6) : type;
}

unsigned takeSampleRate(Bits &bits)
{
    const unsigned index = bits.take(4);
    return index == 15 ? bits.take(24) : aacSampleRate(index);
}

bool isAac(unsigned type)
{
    return type >= kMain && type <= kLongTermPrediction;
}

} // namespace

std::optional<AacConfiguration> readAacConfiguration(std::span<const std::uint8_t> bytes)
{
    Bits bits(bytes);
    AacConfiguration configuration;
    unsigned type = takeObjectType(bits);
    configuration.sampleRate = takeSampleRate(bits);
    const unsigned channels = bits.take(4);
    bool isStereo = type == kParametricStereo;
    if (type == kBandReplication || type == kParametricStereo) {
        configuration.sampleRate = takeSampleRate(bits);
        type = takeObjectType(bits);
    } else if (type == kLowComplexity) {
        bits.take(1);                          // frame length
        bits.take(bits.take(1) != 0 ? 14 : 0); // delay of a core coder
        bits.take(1);                          // extension
        const bool hasReplication =
            bits.take(11) == kReplicationFollows && takeObjectType(bits) == kBandReplication && bits.take(1) != 0;
        if (hasReplication) {
            configuration.sampleRate = takeSampleRate(bits);
            isStereo = bits.take(11) == kStereoFollows && bits.take(1) != 0;
        }
    }
    configuration.channels = channels == 7 ? 8 : isStereo && channels == 1 ? 2 : channels;
    const bool isKnown = isAac(type) && configuration.sampleRate > 0 && channels >= 1 && channels <= 7;
    return isKnown ? std::optional(configuration) : std::nullopt;
}

} // namespace ostrelle
