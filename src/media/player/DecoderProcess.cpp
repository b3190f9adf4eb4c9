#include "media_player/DecoderProcess.h"

#include "media_helper/RecordSocket.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace ostrelle {
namespace {

bool isSound(const AudioFormat &format)
{
    return format.channels >= 1 && format.channels <= AudioFormat::kMostChannels && format.sampleRate >= 1 &&
           format.sampleRate <= AudioFormat::kMostFramesPerSecond && format.frames >= -1 &&
           (format.speakers == 0 || std::popcount(format.speakers) == format.channels);
}

} // namespace

class DecoderProcess::Stream final : public AudioStream
{
public:
    Stream(DecoderProcess &process, const AudioFormat &format)
        : m_process(process)
    {
        m_format = format;
    }

    std::size_t read(std::span<float> samples) override
    {
        const auto channels = static_cast<std::size_t>(m_format.channels);
        const auto wanted = static_cast<std::uint32_t>(samples.size() / channels);
        const std::optional<DecoderAnswer> answer = m_process.ask({DecoderOrder::Read, wanted, 0});
        if (!answer || answer->status != DecoderStatus::Done || answer->frames > wanted ||
            !m_process.receive(samples.data(), answer->frames * channels * sizeof(float))) {
            // Whatever still comes would be taken for another answer.
            m_process.m_socket.reset();
            return 0;
        }
        return answer->frames;
    }

    bool seek(std::int64_t frame) override
    {
        const std::optional<DecoderAnswer> answer = m_process.ask({DecoderOrder::Seek, 0, frame});
        return answer && answer->status == DecoderStatus::Done;
    }

private:
    DecoderProcess &m_process;
};

std::unique_ptr<DecoderProcess> DecoderProcess::start(const AudioTable &table)
{
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return nullptr;
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child < 0)
        return nullptr;
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const bool hasParent = ::getppid() == parent;
        ::_exit(hasParent && ::dup2(theirs.get(), kProgramSocket) == kProgramSocket ? serveDecoder(table) : 1);
    }
    return std::make_unique<DecoderProcess>(OnlyStart{}, std::move(ours));
}

DecoderProcess::DecoderProcess(OnlyStart, FileDescriptor socket)
    : m_socket(std::move(socket))
{
}

std::variant<std::unique_ptr<AudioStream>, DecoderStatus> DecoderProcess::open(const FileDescriptor &file)
{
    const std::optional<DecoderAnswer> answer = ask({DecoderOrder::Open, 0, 0}, file.get());
    if (!answer || (answer->status == DecoderStatus::Done && !isSound(answer->format)))
        return DecoderStatus::Unplayable;
    if (answer->status != DecoderStatus::Done)
        return answer->status;
    return std::make_unique<Stream>(*this, answer->format);
}

std::optional<DecoderAnswer> DecoderProcess::ask(const DecoderRequest &request, int file)
{
    DecoderAnswer answer;
    const bool isAnswered =
        sendRecord(m_socket.get(), &request, sizeof request, file) && receive(&answer, sizeof answer);
    return isAnswered ? std::optional(answer) : std::nullopt;
}

bool DecoderProcess::receive(void *bytes, std::size_t size)
{
    auto *at = static_cast<char *>(bytes);
    while (size > 0) {
        const ssize_t count = ::read(m_socket.get(), at, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace ostrelle
