#pragma once

#include "media_helper/PictureCommands.h"
#include "media_helper/Sandbox.h"

#include <functional>
#include <vector>

namespace ostrelle {

/// One command that a helper knows.
struct CommandRow
{
    HelperCommand command;
    std::function<CommandAnswer(ByteSource &source, const HelperRequest &request)> answer;
};
using Commands = std::vector<CommandRow>;

/// The whole life of a helper: shuts itself in, then serves one file after the other from its standard input until that
/// closes. Returns the exit status.
int serveFiles(const SandboxLimits &limits, const Commands &commands);

} // namespace ostrelle
