#include "media_helper/FactsTables.h"
#include "media_helper/HelperService.h"

int main()
{
    using namespace ostrelle;
    SandboxLimits limits;
    limits.addressSpace = std::size_t(128) << 20U;
    limits.cpuSeconds = 120;
    const Commands commands{
        {HelperCommand::ImageInfo,
         [](ByteSource &source, const HelperRequest &request) {
             return answerImageInfo(source, request, kImageFacts);
         }},
        {HelperCommand::AudioInfo,
         [](ByteSource &source, const HelperRequest &) { return answerAudioInfo(source, kAudioFacts); }},
    };
    return serveFiles(limits, commands);
}
