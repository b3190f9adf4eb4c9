#pragma once

#include "media_helper/ByteSource.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ostrelle {

/// What is asked of a TIFF directory here (TIFF 6.0, TIFF/EP, Adobe DNG).
namespace tiff_tag {
inline constexpr std::uint16_t kNewSubfileType = 254;
inline constexpr std::uint16_t kImageWidth = 256;
inline constexpr std::uint16_t kImageLength = 257;
inline constexpr std::uint16_t kBitsPerSample = 258;
inline constexpr std::uint16_t kPhotometric = 262;
inline constexpr std::uint16_t kMake = 271;
inline constexpr std::uint16_t kOrientation = 274;
inline constexpr std::uint16_t kSamplesPerPixel = 277;
inline constexpr std::uint16_t kXResolution = 282;
inline constexpr std::uint16_t kResolutionUnit = 296;
inline constexpr std::uint16_t kSubDirectories = 330;
inline constexpr std::uint16_t kExtraSamples = 338;
inline constexpr std::uint16_t kIccProfile = 34675;
inline constexpr std::uint16_t kDngVersion = 50706;
inline constexpr std::uint16_t kDefaultCropSize = 50720;
} // namespace tiff_tag

/// The fields of a directory of a TIFF structure, in either byte order, with short offsets or long ones
/// (BigTIFF). Only the directory is read, and of the fields those that are asked for. `source` outlives it.
class TiffDirectory
{
public:
    /// The first one. Nothing where there is no such structure. Cameras that write their own number after the byte
    /// order are known.
    static std::optional<TiffDirectory> first(ByteSource &source);

    bool has(std::uint16_t tag) const { return find(tag) != nullptr; }
    /// The first whole number of the field.
    std::optional<std::uint64_t> number(std::uint16_t tag) const;
    /// The first few of them.
    std::vector<std::uint64_t> numbers(std::uint16_t tag) const;
    /// A number of the field, of any kind.
    std::optional<double> real(std::uint16_t tag, std::uint64_t index = 0) const;
    /// All of the field; empty when that is more than `limit`, or beyond the end of the file.
    std::vector<std::uint8_t> bytes(std::uint16_t tag, std::uint64_t limit) const;

    /// The directories that it names as being below it, as far as they can be read.
    std::vector<TiffDirectory> below() const;

    /// Horizontal, dots per inch; nothing where the unit is none of length.
    std::optional<double> dpi() const;
    /// What cameras write: a small picture first, and the sensor's own data elsewhere. Also true of some others, which
    /// have the maker of the camera and smaller copies of the picture.
    bool isLikeCameraRaw() const;

private:
    struct Field
    {
        std::uint16_t tag = 0;
        std::uint16_t type = 0;
        std::uint64_t count = 0;
        std::uint64_t place = 0; ///< of its values in the file
    };

    explicit TiffDirectory(ByteSource &source)
        : m_source(&source)
    {
    }
    bool readFields(std::uint64_t offset);
    const Field *find(std::uint16_t tag) const;
    std::optional<std::uint64_t> numberAt(std::uint64_t place, std::size_t size) const;
    std::optional<std::uint64_t> value(const Field &field, std::uint64_t index) const;

    ByteSource *m_source;
    bool m_isLittle = true;
    bool m_isBig = false;
    std::vector<Field> m_fields;
};

} // namespace ostrelle
