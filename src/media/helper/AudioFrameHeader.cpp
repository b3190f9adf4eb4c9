#include "media_helper/AudioFrameHeader.h"

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

constexpr unsigned kSamplesPerAacBlock = 1024;

/// In kilobits per second, by the header's index; 0 where it says none.
using BitRates = std::array<std::uint16_t, 15>;
constexpr std::array<BitRates, 3> kBitRatesOfVersion1{
    BitRates{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    BitRates{0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    BitRates{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
};
constexpr std::array<BitRates, 3> kBitRatesOfVersion2{
    BitRates{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    BitRates{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    BitRates{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
};
constexpr std::array<unsigned, 3> kMpegSampleRates{44100, 48000, 32000};
constexpr std::array<unsigned, 13> kAacSampleRates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                                   22050, 16000, 12000, 11025, 8000,  7350};

} // namespace

std::optional<AudioFrameHeader> readMpegFrameHeader(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() < 4 || bytes[0] != 0xff || (bytes[1] & 0xe0U) != 0xe0)
        return std::nullopt;
    const unsigned version = bytes[1] >> 3U & 3U; // 3 is MPEG-1, 2 is MPEG-2, 0 is MPEG-2.5
    const unsigned layerBits = bytes[1] >> 1U & 3U;
    const unsigned bitRateIndex = bytes[2] >> 4U;
    const unsigned sampleRateIndex = bytes[2] >> 2U & 3U;
    if (version == 1 || layerBits == 0 || bitRateIndex == 0 || bitRateIndex == 15 || sampleRateIndex == 3)
        return std::nullopt;
    const unsigned layer = 4 - layerBits;
    const bool isVersion1 = version == 3;
    const unsigned bitRate = (isVersion1 ? kBitRatesOfVersion1 : kBitRatesOfVersion2)[layer - 1][bitRateIndex] * 1000U;
    const unsigned padding = bytes[2] >> 1U & 1U;
    AudioFrameHeader header;
    header.bitRate = bitRate;
    header.sampleRate = kMpegSampleRates[sampleRateIndex] >> (isVersion1 ? 0U : version == 2 ? 1U : 2U);
    header.channels = bytes[3] >> 6U == 3 ? 1 : 2;
    if (layer == 1) {
        header.samples = 384;
        header.byteSize = (12 * bitRate / header.sampleRate + padding) * 4;
    } else {
        header.samples = layer == 3 && !isVersion1 ? 576 : 1152;
        header.byteSize = header.samples / 8 * bitRate / header.sampleRate + padding;
    }
    header.signature = (bytes[1] & 0xfeU) << 8U | sampleRateIndex;
    return header;
}

std::optional<AudioFrameHeader> readAdtsFrameHeader(std::span<const std::uint8_t> bytes)
{
    constexpr unsigned kShortestHeader = 7;
    if (bytes.size() < kShortestHeader || bytes[0] != 0xff || (bytes[1] & 0xf6U) != 0xf0)
        return std::nullopt;
    const unsigned channels = (bytes[2] & 1U) << 2U | bytes[3] >> 6U;
    AudioFrameHeader header;
    header.sampleRate = aacSampleRate(bytes[2] >> 2U & 15U);
    header.byteSize = (bytes[3] & 3U) << 11U | static_cast<unsigned>(bytes[4]) << 3U | bytes[5] >> 5U;
    if (header.sampleRate == 0 || header.byteSize <= kShortestHeader)
        return std::nullopt;
    header.channels = channels == 7 ? 8 : channels;
    header.samples = kSamplesPerAacBlock * ((bytes[6] & 3U) + 1);
    header.signature = static_cast<unsigned>(bytes[1]) << 16U | (bytes[2] & 0xfdU) << 8U | (bytes[3] & 0xc0U);
    return header;
}

unsigned aacSampleRate(unsigned index)
{
    return index < kAacSampleRates.size() ? kAacSampleRates[index] : 0;
}

bool beginsWithFrames(std::span<const std::uint8_t> head, ReadFrameHeader &readHeader)
{
    const auto first = readHeader(head);
    if (!first || first->byteSize > head.size())
        return false;
    const auto rest = head.subspan(first->byteSize);
    const auto second = readHeader(rest);
    return rest.size() < kFrameHeaderBytes || (second && second->signature == first->signature);
}

bool endsWithFrames(std::span<const std::uint8_t> head, ReadFrameHeader &readHeader)
{
    // Tables in programs have rows that look like two or three of them.
    constexpr int kLeastFrames = 3;
    for (; head.size() > kFrameHeaderBytes; head = head.subspan(1)) {
        auto header = readHeader(head);
        const std::uint32_t signature = header ? header->signature : 0;
        std::size_t at = 0;
        int frames = 0;
        while (header && header->signature == signature && at + kFrameHeaderBytes < head.size()) {
            at += header->byteSize;
            header = readHeader(head.subspan(std::min(at, head.size())));
            ++frames;
        }
        if (frames >= kLeastFrames && at + kFrameHeaderBytes >= head.size())
            return true;
    }
    return false;
}

} // namespace ostrelle
