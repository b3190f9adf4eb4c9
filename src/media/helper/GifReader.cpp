#include "media_helper/GifReader.h"

#include <string_view>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kLargestProfile = 4U << 20U;

int readBytes(GifFileType *gif, GifByteType *data, int size)
{
    auto &bytes = *static_cast<ByteReader *>(gif->UserData);
    return static_cast<int>(bytes.read({data, static_cast<std::size_t>(size)}));
}

/// A block begins with its length, and is null when there is none.
std::string_view textOf(const GifByteType *block)
{
    return block ? std::string_view(reinterpret_cast<const char *>(block + 1), block[0]) : std::string_view();
}

/// All of one extension; false when the file ends in it.
bool takeExtension(GifFileType *gif, GifPrelude &prelude)
{
    int code = 0;
    GifByteType *block = nullptr;
    if (DGifGetExtension(gif, &code, &block) == GIF_ERROR)
        return false;
    const bool isProfile = code == APPLICATION_EXT_FUNC_CODE && textOf(block) == "ICCRGBG1012"sv;
    bool isFirst = true;
    while (block) {
        GraphicsControlBlock control{};
        if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) != GIF_ERROR)
            prelude.transparent = control.TransparentColor;
        if (isProfile && !isFirst && prelude.icc.size() < kLargestProfile)
            prelude.icc.insert(prelude.icc.end(), block + 1, block + 1 + block[0]);
        isFirst = false;
        if (DGifGetExtensionNext(gif, &block) == GIF_ERROR)
            return false;
    }
    return true;
}

} // namespace

Gif openedGif(ByteReader &bytes)
{
    return Gif(DGifOpen(&bytes, readBytes, nullptr));
}

std::optional<GifPrelude> findGifPicture(GifFileType *gif)
{
    GifPrelude prelude;
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR || record == TERMINATE_RECORD_TYPE)
            return std::nullopt;
        if (record == IMAGE_DESC_RECORD_TYPE)
            break;
        if (record == EXTENSION_RECORD_TYPE && !takeExtension(gif, prelude))
            return std::nullopt;
    }
    if (DGifGetImageDesc(gif) == GIF_ERROR)
        return std::nullopt;
    // Some writers leave the canvas empty and mean their only picture.
    const GifImageDesc &place = gif->Image;
    gif->SWidth = gif->SWidth > 0 ? gif->SWidth : place.Left + place.Width;
    gif->SHeight = gif->SHeight > 0 ? gif->SHeight : place.Top + place.Height;
    return prelude;
}

} // namespace ostrelle
