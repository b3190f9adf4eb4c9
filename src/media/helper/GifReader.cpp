#include "media_helper/GifReader.h"

namespace ostrelle {
namespace {

int readBytes(GifFileType *gif, GifByteType *data, int size)
{
    auto &bytes = *static_cast<ByteReader *>(gif->UserData);
    return static_cast<int>(bytes.read({data, static_cast<std::size_t>(size)}));
}

} // namespace

Gif openedGif(ByteReader &bytes)
{
    return Gif(DGifOpen(&bytes, readBytes, nullptr));
}

bool findGifPicture(GifFileType *gif, int &transparent)
{
    transparent = NO_TRANSPARENT_COLOR;
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR || record == TERMINATE_RECORD_TYPE)
            return false;
        if (record == IMAGE_DESC_RECORD_TYPE)
            break;
        if (record != EXTENSION_RECORD_TYPE)
            continue;
        int code = 0;
        GifByteType *block = nullptr;
        if (DGifGetExtension(gif, &code, &block) == GIF_ERROR)
            return false;
        while (block) {
            GraphicsControlBlock control{};
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) != GIF_ERROR)
                transparent = control.TransparentColor;
            if (DGifGetExtensionNext(gif, &block) == GIF_ERROR)
                return false;
        }
    }
    if (DGifGetImageDesc(gif) == GIF_ERROR)
        return false;
    // Some writers leave the canvas empty and mean their only picture.
    const GifImageDesc &place = gif->Image;
    gif->SWidth = gif->SWidth > 0 ? gif->SWidth : place.Left + place.Width;
    gif->SHeight = gif->SHeight > 0 ? gif->SHeight : place.Top + place.Height;
    return true;
}

} // namespace ostrelle
