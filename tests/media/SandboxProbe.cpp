// A helper that tries from inside what no file must be able to make one do, and answers with the error of each attempt.
#include "SandboxAttempts.h"
#include "media_helper/HelperService.h"

#include <cstring>

#include <fcntl.h>

namespace {

using namespace ostrelle;

CommandAnswer attempt(ByteSource &, const HelperRequest &)
{
    const AttemptErrors errors = attemptEverything();
    CommandAnswer answer;
    answer.header.width = errors.size();
    answer.header.height = 1;
    answer.payload.resize(sizeof errors);
    std::memcpy(answer.payload.data(), errors.data(), sizeof errors);
    return answer;
}

#ifdef OSTRELLE_PROBE_READS_FONTS
/// Tells whether what may be read can be read: 1 is yes.
CommandAnswer readFonts(ByteSource &, const HelperRequest &)
{
    CommandAnswer answer;
    answer.payload.push_back(open("/usr/share/fonts", O_RDONLY | O_DIRECTORY) >= 0 ? 1 : 0);
    return answer;
}
#endif

} // namespace

int main()
{
    SandboxLimits limits;
    limits.addressSpace = std::size_t(1) << 30U;
    limits.cpuSeconds = 10;
#ifdef OSTRELLE_PROBE_IS_CONNECTED
    limits.keepsConnections = true;
#endif
#ifdef OSTRELLE_PROBE_READS_FONTS
    limits.mayStartThreads = true;
    limits.readableFolders = {"/usr/share/fonts"};
    const Commands commands{CommandRow{HelperCommand::Thumbnail, attempt}, CommandRow{HelperCommand::ToPng, readFonts}};
#else
    const Commands commands{CommandRow{HelperCommand::Thumbnail, attempt}};
#endif
    return serveFiles(limits, commands);
}
