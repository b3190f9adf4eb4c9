#pragma once

#include "media_helper/ByteSource.h"

#include <memory>

#include <sndfile.h>

namespace ostrelle {

struct CloseSoundFile
{
    void operator()(SNDFILE *file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSoundFile>;

/// Opens what libsndfile knows, and fills in `info`; null when it does not know the file. `reader` outlives the file.
SoundFile openSoundFile(ByteReader &reader, SF_INFO &info);

} // namespace ostrelle
