#include "media_helper/AudioFacts.h"
#include "media_helper/ByteFields.h"

#include <algorithm>
#include <array>

// The format: RFC 9639. TagLib and libFLAC read the pictures as well, of which there may be many megabytes.

namespace ostrelle {
namespace {

constexpr std::size_t kStreamInfoAt = 8;
constexpr std::size_t kStreamInfoSize = 34;
/// More than most frames take; a longer last one leaves the length unknown.
constexpr std::uint64_t kReadForLastFrame = 256 * 1024;
constexpr std::size_t kLongestFrameHeader = 16;

struct StreamInfo
{
    unsigned block = 0; ///< samples per frame where frames are numbered
    unsigned sampleRate = 0;
    unsigned channels = 0;
    std::uint64_t samples = 0; ///< per channel; 0 when the encoder did not know it
};

std::optional<StreamInfo> readStreamInfo(ByteSource &source)
{
    std::array<std::uint8_t, kStreamInfoAt + kStreamInfoSize> bytes{};
    if (!readWhole(source, 0, bytes) || asText(bytes).substr(0, 4) != "fLaC" || (bytes[4] & 0x7fU) != 0)
        return std::nullopt;
    const ByteSpan fields = ByteSpan(bytes).subspan(kStreamInfoAt);
    // 20 bits of rate, 3 of channels, 5 of depth, 36 of length
    const std::uint64_t packed = bigEndian(fields.subspan(10, 8));
    StreamInfo info;
    info.block = static_cast<unsigned>(bigEndian(fields.first(2)));
    info.sampleRate = static_cast<unsigned>(packed >> 44U);
    info.channels = static_cast<unsigned>(packed >> 41U & 7U) + 1;
    info.samples = packed & 0xfffffffffU;
    return info.sampleRate > 0 ? std::optional(info) : std::nullopt;
}

std::uint8_t checksum(ByteSpan bytes)
{
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum << 1U) ^ ((sum & 0x80U) != 0 ? 0x107U : 0U);
    }
    return static_cast<std::uint8_t>(sum);
}

/// A number in the manner of UTF-8, of up to seven bytes; `size` is that of its bytes, 0 when it is none.
std::uint64_t codedNumber(ByteSpan bytes, std::size_t &size)
{
    size = 0;
    std::size_t ones = 0;
    while (ones < 8 && (bytes[0] & (0x80U >> ones)) != 0)
        ++ones;
    if (ones == 1 || ones == 8)
        return 0;
    const std::size_t count = std::max<std::size_t>(ones, 1);
    std::uint64_t value = ones == 0 ? bytes[0] : bytes[0] & (0x7fU >> ones);
    for (std::size_t i = 1; i < count; ++i) {
        if ((bytes[i] & 0xc0U) != 0x80)
            return 0;
        value = value << 6U | (bytes[i] & 0x3fU);
    }
    size = count;
    return value;
}

/// The sample behind the last of the frame that begins here; 0 when none does.
std::uint64_t endOfFrame(ByteSpan bytes, const StreamInfo &info)
{
    const unsigned channelCode = bytes[3] >> 4U;
    const unsigned channels = channelCode < 8 ? channelCode + 1 : 2;
    if (bytes[0] != 0xff || (bytes[1] & 0xfeU) != 0xf8 || (bytes[3] & 1U) != 0 || channels != info.channels)
        return 0;
    const bool isNumberedBySample = (bytes[1] & 1U) != 0;
    const unsigned blockCode = bytes[2] >> 4U;
    const unsigned rateCode = bytes[2] & 15U;
    std::size_t size = 0;
    const std::uint64_t number = codedNumber(bytes.subspan(4), size);
    std::size_t at = 4 + size;
    unsigned block = 0;
    if (blockCode == 1) {
        block = 192;
    } else if (blockCode >= 2 && blockCode <= 5) {
        block = 576U << (blockCode - 2);
    } else if (blockCode == 6) {
        block = bytes[at++] + 1U;
    } else if (blockCode == 7) {
        block = static_cast<unsigned>(bigEndian(bytes.subspan(at, 2))) + 1;
        at += 2;
    } else {
        block = blockCode == 0 ? 0 : 256U << (blockCode - 8);
    }
    at += rateCode == 12 ? 1 : rateCode >= 13 && rateCode <= 14 ? 2 : 0;
    if (size == 0 || block == 0 || checksum(bytes.first(at)) != bytes[at])
        return 0;
    return (isNumberedBySample ? number : number * info.block) + block;
}

/// From the last frame in the file, which tells its place.
std::uint64_t countedSamples(ByteSource &source, const StreamInfo &info)
{
    std::vector<std::uint8_t> bytes(std::min(source.size(), kReadForLastFrame));
    bytes.resize(source.readAt(source.size() - bytes.size(), bytes));
    if (bytes.size() < kLongestFrameHeader)
        return 0;
    const ByteSpan all(bytes);
    for (std::size_t at = all.size() - kLongestFrameHeader;; --at) {
        const std::uint64_t end = endOfFrame(all.subspan(at), info);
        if (end > 0)
            return end;
        if (at == 0)
            return 0;
    }
}

} // namespace

std::optional<AudioFacts> readFlacFacts(ByteSource &source)
{
    const auto info = readStreamInfo(source);
    if (!info)
        return std::nullopt;
    AudioFacts facts;
    facts.sampleRate = info->sampleRate;
    facts.channels = static_cast<int>(info->channels);
    const std::uint64_t samples = info->samples > 0 ? info->samples : countedSamples(source, *info);
    facts.duration = static_cast<double>(samples) / info->sampleRate;
    return facts;
}

} // namespace ostrelle
