#include "media_helper/TiffDirectory.h"

#include "media_helper/ByteFields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::literals;

/// The number behind the byte order.
constexpr std::uint64_t kClassic = 42;
constexpr std::uint64_t kBig = 43;
/// Of Olympus: "RO", "RS".
constexpr std::array<std::uint64_t, 2> kOfCameras{0x4f52, 0x5352};

constexpr std::uint64_t kMostFields = 4096;
constexpr std::uint64_t kMostNumbers = 16;

constexpr std::uint64_t kNoUnit = 1;
constexpr std::uint64_t kCentimetre = 3;
constexpr double kCentimetresPerInch = 2.54;

constexpr std::uint64_t kColorFilterArray = 32803;
constexpr std::uint64_t kLinearRaw = 34892;
constexpr std::uint64_t kIsReduced = 1;

enum Type : std::uint16_t { Rational = 5, SignedRational = 10, Float = 11, Double = 12 };

/// Bytes of one value; 0 of types that there are not.
std::size_t sizeOf(std::uint16_t type)
{
    constexpr std::array<std::uint8_t, 19> kSizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
    return type < kSizes.size() ? kSizes[type] : 0;
}

} // namespace

std::optional<TiffDirectory> TiffDirectory::first(ByteSource &source)
{
    std::array<std::uint8_t, 16> head{};
    const std::string_view order = asText(ByteSpan(head).first(source.readAt(0, head))).substr(0, 2);
    TiffDirectory directory(source);
    directory.m_isLittle = order == "II"sv;
    if (!directory.m_isLittle && order != "MM"sv)
        return std::nullopt;
    const auto version = directory.numberAt(2, 2).value_or(0);
    directory.m_isBig = version == kBig;
    const bool isKnown = version == kClassic || directory.m_isBig ||
                         std::find(kOfCameras.begin(), kOfCameras.end(), version) != kOfCameras.end();
    const auto offset = directory.m_isBig ? directory.numberAt(8, 8) : directory.numberAt(4, 4);
    return isKnown && offset && directory.readFields(*offset) ? std::optional(std::move(directory)) : std::nullopt;
}

bool TiffDirectory::readFields(std::uint64_t offset)
{
    const std::size_t word = m_isBig ? 8 : 4;
    const std::size_t countSize = m_isBig ? 8 : 2;
    const auto count = numberAt(offset, countSize);
    if (!count)
        return false;
    const std::size_t fieldSize = 4 + 2 * word;
    for (std::uint64_t i = 0; i < std::min(*count, kMostFields); ++i) {
        const std::uint64_t at = offset + countSize + i * fieldSize;
        const auto tag = numberAt(at, 2);
        const auto type = numberAt(at + 2, 2);
        const auto values = numberAt(at + 4, word);
        const auto place = numberAt(at + 4 + word, word);
        // What a cut file still has of its directory counts.
        if (!tag || !type || !values || !place)
            break;
        Field field{static_cast<std::uint16_t>(*tag), static_cast<std::uint16_t>(*type), *values, at + 4 + word};
        const std::size_t size = sizeOf(field.type);
        if (size == 0)
            continue;
        if (field.count > word / size)
            field.place = *place;
        m_fields.push_back(field);
    }
    return !m_fields.empty();
}

const TiffDirectory::Field *TiffDirectory::find(std::uint16_t tag) const
{
    const auto field = std::find_if(m_fields.begin(), m_fields.end(),
                                    [tag](const Field &each) { return each.tag == tag && each.count > 0; });
    return field == m_fields.end() ? nullptr : &*field;
}

std::optional<std::uint64_t> TiffDirectory::numberAt(std::uint64_t place, std::size_t size) const
{
    std::array<std::uint8_t, 8> buffer{};
    const auto bytes = std::span(buffer).first(size);
    if (!readWhole(*m_source, place, bytes))
        return std::nullopt;
    return m_isLittle ? littleEndian(bytes) : bigEndian(bytes);
}

std::optional<std::uint64_t> TiffDirectory::value(const Field &field, std::uint64_t index) const
{
    const bool isWhole = field.type != Rational && field.type != SignedRational && field.type != Float &&
                         field.type != Double && index < field.count;
    const std::size_t size = sizeOf(field.type);
    return isWhole ? numberAt(field.place + index * size, size) : std::nullopt;
}

std::optional<std::uint64_t> TiffDirectory::number(std::uint16_t tag) const
{
    const Field *const field = find(tag);
    return field ? value(*field, 0) : std::nullopt;
}

std::vector<std::uint64_t> TiffDirectory::numbers(std::uint16_t tag) const
{
    std::vector<std::uint64_t> all;
    const Field *const field = find(tag);
    for (std::uint64_t i = 0; field && i < std::min(field->count, kMostNumbers); ++i) {
        if (const auto each = value(*field, i))
            all.push_back(*each);
    }
    return all;
}

std::optional<double> TiffDirectory::real(std::uint16_t tag, std::uint64_t index) const
{
    const Field *const field = find(tag);
    if (!field || index >= field->count)
        return std::nullopt;
    const std::uint64_t place = field->place + index * sizeOf(field->type);
    if (field->type == Rational) {
        const auto over = numberAt(place, 4);
        const auto under = numberAt(place + 4, 4);
        if (!over || under.value_or(0) == 0)
            return std::nullopt;
        return double(*over) / double(*under);
    }
    if (field->type == Float || field->type == Double) {
        const auto bits = numberAt(place, sizeOf(field->type));
        if (!bits)
            return std::nullopt;
        return field->type == Double ? std::bit_cast<double>(*bits)
                                     : double(std::bit_cast<float>(static_cast<std::uint32_t>(*bits)));
    }
    const auto whole = value(*field, index);
    return whole ? std::optional(double(*whole)) : std::nullopt;
}

std::vector<std::uint8_t> TiffDirectory::bytes(std::uint16_t tag, std::uint64_t limit) const
{
    const Field *const field = find(tag);
    if (!field || field->count > limit / sizeOf(field->type))
        return {};
    std::vector<std::uint8_t> all(static_cast<std::size_t>(field->count) * sizeOf(field->type));
    return readWhole(*m_source, field->place, all) ? all : std::vector<std::uint8_t>();
}

std::vector<TiffDirectory> TiffDirectory::below() const
{
    std::vector<TiffDirectory> directories;
    for (const std::uint64_t offset : numbers(tiff_tag::kSubDirectories)) {
        TiffDirectory directory(*m_source);
        directory.m_isLittle = m_isLittle;
        directory.m_isBig = m_isBig;
        if (directory.readFields(offset))
            directories.push_back(std::move(directory));
    }
    return directories;
}

std::optional<double> TiffDirectory::dpi() const
{
    const auto unit = number(tiff_tag::kResolutionUnit);
    const auto resolution = unit == kNoUnit ? std::nullopt : real(tiff_tag::kXResolution);
    return resolution && unit == kCentimetre ? std::optional(*resolution * kCentimetresPerInch) : resolution;
}

bool TiffDirectory::isLikeCameraRaw() const
{
    const auto photometric = number(tiff_tag::kPhotometric);
    if (has(tiff_tag::kDngVersion) || photometric == kColorFilterArray || photometric == kLinearRaw)
        return true;
    const bool isReduced = (number(tiff_tag::kNewSubfileType).value_or(0) & kIsReduced) != 0;
    return has(tiff_tag::kMake) && (has(tiff_tag::kSubDirectories) || isReduced);
}

} // namespace ostrelle
