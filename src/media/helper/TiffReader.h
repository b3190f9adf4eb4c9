#pragma once

#include "media_helper/ByteSource.h"

#include <tiffio.h>

#include <memory>

namespace ostrelle {

struct CloseTiff
{
    void operator()(TIFF *tiff) const { TIFFClose(tiff); }
};

/// libtiff on its first directory, reading from `reader`, which outlives it. Null when there is none.
std::unique_ptr<TIFF, CloseTiff> openedTiff(ByteReader &reader);

/// The field's value, its default, or `otherwise`.
template <typename Value>
Value tiffField(TIFF *tiff, ttag_t tag, Value otherwise)
{
    Value value = otherwise;
    return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : otherwise;
}

} // namespace ostrelle
