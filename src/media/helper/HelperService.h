#pragma once

#include "media_helper/PictureCommands.h"
#include "media_helper/Sandbox.h"

#include <span>

namespace ostrelle {

/// One command that a helper knows.
struct CommandRow
{
    HelperCommand command;
    CommandAnswer (*answer)(ByteSource &source, const HelperRequest &request, const DecoderTable &decoders);
};

/// The whole life of a helper: shuts itself in, then serves one file after the other from its standard input until that
/// closes. Returns the exit status.
int serveFiles(const SandboxLimits &limits, std::span<const CommandRow> commands, const DecoderTable &decoders);

/// The commands of every helper.
std::span<const CommandRow> pictureCommands();

} // namespace ostrelle
