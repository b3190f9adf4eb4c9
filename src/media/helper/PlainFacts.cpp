#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kHeadBytes = 4096;
constexpr auto kWhiteSpace = " \t\r\n\v\f"sv;

struct Head
{
    explicit Head(ByteSource &source)
        : text(asText(ByteSpan(bytes).first(source.readAt(0, bytes))))
    {
    }
    std::array<std::uint8_t, kHeadBytes> bytes{};
    std::string_view text;
};

/// The next word, comments from # to the end of the line left out.
std::string_view takeWord(std::string_view &text)
{
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
        if (!text.starts_with('#'))
            break;
        text.remove_prefix(std::min(text.find('\n'), text.size()));
    }
    const std::string_view word = text.substr(0, text.find_first_of(kWhiteSpace));
    text.remove_prefix(word.size());
    return word;
}

std::int64_t numberIn(std::string_view word)
{
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() ? number : 0;
}

int depthOf(std::int64_t largest)
{
    return largest > 255 ? 16 : 8;
}

/// Netpbm's PAM: a line each for its fields.
ImageFacts pamFacts(std::string_view text)
{
    ImageFacts facts;
    facts.format = "PAM";
    for (std::string_view key = takeWord(text); !key.empty() && key != "ENDHDR"sv; key = takeWord(text)) {
        const std::string_view value = takeWord(text);
        if (key == "WIDTH"sv)
            facts.width = numberIn(value);
        else if (key == "HEIGHT"sv)
            facts.height = numberIn(value);
        else if (key == "MAXVAL"sv)
            facts.bitDepth = depthOf(numberIn(value));
        else if (key == "TUPLTYPE"sv) {
            facts.hasAlpha = value.ends_with("_ALPHA"sv);
            facts.model = value.starts_with("RGB"sv) ? color_model::kRgb : color_model::kGray;
        }
    }
    return facts;
}

} // namespace

std::optional<ImageFacts> readPnmFacts(ByteSource &source)
{
    const Head head(source);
    std::string_view text = head.text;
    const std::string_view magic = takeWord(text);
    if (magic == "P7"sv)
        return pamFacts(text);
    ImageFacts facts;
    facts.width = numberIn(takeWord(text));
    facts.height = numberIn(takeWord(text));
    const bool isColor = magic == "P3"sv || magic == "P6"sv || magic == "PF"sv;
    facts.model = isColor ? color_model::kRgb : color_model::kGray;
    if (magic == "PF"sv || magic == "Pf"sv) {
        facts.format = "PFM";
        facts.bitDepth = 32;
    } else if (magic == "P1"sv || magic == "P4"sv) {
        facts.format = "PBM";
        facts.bitDepth = 1;
    } else {
        facts.format = isColor ? "PPM" : "PGM";
        facts.bitDepth = depthOf(numberIn(takeWord(text)));
    }
    return facts;
}

/// Radiance: lines of text, an empty one, then the size and the directions of the rows.
std::optional<ImageFacts> readHdrFacts(ByteSource &source)
{
    const Head head(source);
    const std::size_t end = head.text.find("\n\n"sv);
    if (end == std::string_view::npos)
        return std::nullopt;
    std::string_view line = head.text.substr(end + 2);
    const std::string_view firstAxis = takeWord(line);
    const std::int64_t first = numberIn(takeWord(line));
    takeWord(line);
    const std::int64_t second = numberIn(takeWord(line));
    ImageFacts facts;
    facts.format = "HDR";
    const bool rowsFirst = firstAxis.ends_with('Y');
    facts.height = rowsFirst ? first : second;
    facts.width = rowsFirst ? second : first;
    // Three samples share one exponent: no depth says what that is.
    facts.model = color_model::kRgb;
    return facts;
}

/// Truevision TGA 2.0, field 1 to 5.
std::optional<ImageFacts> readTgaFacts(ByteSource &source)
{
    std::array<std::uint8_t, 18> header{};
    if (!readWhole(source, 0, header))
        return std::nullopt;
    const unsigned type = header[2] & 0x7U;
    const bool isGray = type == 3;
    const unsigned bits = header[16];
    const unsigned alphaBits = header[17] & 0xfU;
    const bool isPossible = header[1] <= 1 && (header[2] & ~0xbU) == 0 && type >= 1 &&
                            (bits == 8 || bits == 15 || bits == 16 || bits == 24 || bits == 32) &&
                            (header[17] & 0xc0U) == 0;
    if (!isPossible)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "TGA";
    facts.width = static_cast<std::int64_t>(littleEndian(ByteSpan(header).subspan(12, 2)));
    facts.height = static_cast<std::int64_t>(littleEndian(ByteSpan(header).subspan(14, 2)));
    facts.model = isGray ? color_model::kGray : color_model::kRgb;
    facts.bitDepth = !isGray && (bits == 15 || bits == 16) ? 5 : 8;
    facts.hasAlpha = alphaBits > 0;
    return facts;
}

} // namespace ostrelle
