#include "media_helper/TempoTag.h"

#include <charconv>

namespace ostrelle {
namespace {

constexpr double kHighestTempo = 400;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\r\n\v\f";
    const std::size_t begin = text.find_first_not_of(kSpace);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

} // namespace

std::optional<double> tempoFromNumber(double value)
{
    return value > 0 && value <= kHighestTempo ? std::optional(value) : std::nullopt;
}

std::optional<double> tempoFromText(std::string_view text)
{
    text = trimmed(text);
    // Which from_chars() does not take.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    double value = 0;
    const char *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? tempoFromNumber(value) : std::nullopt;
}

} // namespace ostrelle
