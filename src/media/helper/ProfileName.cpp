#include "media_helper/ProfileName.h"

#include <lcms2.h>

#include <array>
#include <cstring>
#include <memory>

namespace ostrelle {
namespace {

struct CloseProfile
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};

/// Where wchar_t is UTF-32, as on this platform.
void appendUtf8(std::string &text, std::uint32_t letter)
{
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto putRest = [&](int count) {
        for (int i = count - 1; i >= 0; --i)
            put(0x80 | (letter >> (6 * i) & 0x3f));
    };
    if (letter < 0x80) {
        put(letter);
    } else if (letter < 0x800) {
        put(0xc0 | letter >> 6);
        putRest(1);
    } else if (letter < 0x10000) {
        put(0xe0 | letter >> 12);
        putRest(2);
    } else {
        put(0xf0 | (letter >> 18 & 7));
        putRest(3);
    }
}

} // namespace

std::string profileName(const std::vector<std::uint8_t> &icc)
{
    if (icc.empty())
        return {};
    cmsSetLogErrorHandler(nullptr);
    const std::unique_ptr<void, CloseProfile> profile(
        cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    if (!profile)
        return {};
    const auto *names = static_cast<const cmsMLU *>(cmsReadTag(profile.get(), cmsSigProfileDescriptionTag));
    constexpr cmsUInt32Number kLongestName = 256;
    std::array<wchar_t, kLongestName> wide{};
    // Of a language that it does not have, the library gives the first.
    if (!names || cmsMLUgetWide(names, "en", "US", wide.data(), sizeof wide) == 0)
        return {};
    std::array<std::uint32_t, kLongestName> letters{};
    static_assert(sizeof letters == sizeof wide);
    std::memcpy(letters.data(), wide.data(), sizeof wide);
    std::string name;
    for (std::size_t i = 0; i + 1 < kLongestName && letters[i] != 0; ++i) {
        const std::uint32_t letter = letters[i];
        const bool isLowHalf = letter >= 0xdc00 && letter < 0xe000;
        const bool isHighHalf = letter >= 0xd800 && letter < 0xdc00;
        if (isLowHalf)
            continue;
        const std::uint32_t next = letters[i + 1];
        if (!isHighHalf)
            appendUtf8(name, letter);
        else if (next >= 0xdc00 && next < 0xe000)
            appendUtf8(name, 0x10000 + ((letter - 0xd800) << 10) + (next - 0xdc00));
    }
    return name;
}

} // namespace ostrelle
