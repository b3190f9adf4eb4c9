#include "media_player/PlayFile.h"

extern "C" {
#include <libavutil/log.h>
}

int main()
{
    using namespace ostrelle;
    av_log_set_level(AV_LOG_QUIET);
    return playFile({.rows = {}, .others = openMediaAudio, .addressSpace = std::size_t(1) << 30U});
}
