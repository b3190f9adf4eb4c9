#include "media_helper/AudioStream.h"

#include <algorithm>
#include <array>

namespace ostrelle {

std::int64_t AudioStream::countFrames(std::int64_t)
{
    return std::max<std::int64_t>(0, m_format.frames);
}

std::uint32_t usualSpeakers(int channels)
{
    // Mono, stereo, 3.0, quadraphonic, 5.0, 5.1, 6.1, 7.1.
    constexpr std::array<std::uint32_t, 9> kUsual{0, 0x4, 0x3, 0x7, 0x33, 0x37, 0x3f, 0x70f, 0x63f};
    return channels >= 0 && channels < static_cast<int>(kUsual.size()) ? kUsual[static_cast<std::size_t>(channels)] : 0;
}

} // namespace ostrelle
