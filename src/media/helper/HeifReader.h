#pragma once

#include "media_helper/ByteSource.h"

#include <libheif/heif.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace ostrelle {

struct FreeHeif
{
    void operator()(heif_context *context) const { heif_context_free(context); }
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image *image) const { heif_image_release(image); }
};
using HeifHandle = std::unique_ptr<heif_image_handle, FreeHeif>;

/// A HEIF or AVIF file, and the picture in it that is shown. `primary` is null when there is none.
struct HeifFile
{
    explicit HeifFile(ByteSource &source);

    ByteReader reader;
    std::unique_ptr<heif_context, FreeHeif> context;
    HeifHandle primary;
};

/// Empty when there is none.
std::vector<std::uint8_t> heifIcc(const heif_image_handle *handle);

} // namespace ostrelle
