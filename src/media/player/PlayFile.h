#pragma once

#include "media_player/DecoderService.h"

namespace ostrelle {

/// The whole life of a player: starts the process that decodes, connects to the sound server, shuts itself in, then
/// plays the one file that it is handed over its standard input. Returns the exit status.
int playFile(const AudioTable &table);

} // namespace ostrelle
