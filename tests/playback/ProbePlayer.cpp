// A player whose decoder tries what no file must be able to make it do, and tells by the length of the sound which
// attempts were not refused.
#include "SandboxAttempts.h"
#include "media_player/PlayFile.h"

#include <cerrno>

namespace {

using namespace ostrelle;

class Outcome final : public AudioStream
{
public:
    explicit Outcome(std::int64_t allowed)
    {
        m_format.sampleRate = 8000;
        m_format.channels = 1;
        // A length of 0 would be an unknown one.
        m_format.frames = (allowed + 1) * m_format.sampleRate;
    }
    std::size_t read(std::span<float> samples) override { return samples.size(); }
    bool seek(std::int64_t) override { return true; }
};

std::unique_ptr<AudioStream> attempt(ByteSource &)
{
    std::int64_t allowed = 0;
    const AttemptErrors errors = attemptEverything();
    for (std::size_t i = 0; i < errors.size(); ++i) {
        if (errors[i] != EPERM && errors[i] != EACCES)
            allowed |= std::int64_t(1) << i;
    }
    return std::make_unique<Outcome>(allowed);
}

} // namespace

int main()
{
    return playFile({.rows = {}, .others = attempt, .addressSpace = std::size_t(256) << 20U});
}
