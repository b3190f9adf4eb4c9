#include "media_player/PlayFile.h"

#include <array>

int main()
{
    using namespace ostrelle;
    constexpr std::array kRows{
        AudioRow{FileKind::Wav, openSampledAudio},      AudioRow{FileKind::Aiff, openSampledAudio},
        AudioRow{FileKind::Caf, openSampledAudio},      AudioRow{FileKind::Flac, openSampledAudio},
        AudioRow{FileKind::OggAudio, openSampledAudio}, AudioRow{FileKind::Mp3, openMp3},
    };
    return playFile({.rows = kRows, .others = nullptr, .addressSpace = std::size_t(256) << 20U});
}
