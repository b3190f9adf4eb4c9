#include "media_helper/HelperService.h"

#include "foundation/FileDescriptor.h"
#include "media_helper/ByteSource.h"

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <optional>

namespace ostrelle {
namespace {

constexpr int kSocket = STDIN_FILENO;

struct Received
{
    HelperRequest request;
    FileDescriptor file;
};

/// The next request; nothing when the program has closed the socket, or does not keep to the protocol.
std::optional<Received> receive()
{
    Received received;
    iovec part{&received.request, sizeof received.request};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ssize_t size = 0;
    do {
        size = ::recvmsg(kSocket, &message, MSG_CMSG_CLOEXEC);
    } while (size < 0 && errno == EINTR);
    const cmsghdr *header = CMSG_FIRSTHDR(&message);
    if (header && header->cmsg_type == SCM_RIGHTS && header->cmsg_len == CMSG_LEN(sizeof(int))) {
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
        received.file.reset(descriptor);
    }
    const bool isRequest = size == static_cast<ssize_t>(sizeof received.request) &&
                           received.request.magic == kHelperMagic && received.file;
    return isRequest ? std::optional(std::move(received)) : std::nullopt;
}

bool send(const void *bytes, std::size_t size)
{
    iovec part{const_cast<void *>(bytes), size};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    while (part.iov_len > 0) {
        const ssize_t sent = ::sendmsg(kSocket, &message, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        part.iov_base = static_cast<char *>(part.iov_base) + sent;
        part.iov_len -= static_cast<std::size_t>(sent);
    }
    return true;
}

/// From what is used up already, up to the limit of the process.
void limitCpuTime(unsigned seconds)
{
    rlimit limit{};
    timespec used{};
    if (::getrlimit(RLIMIT_CPU, &limit) != 0 || ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, static_cast<rlim_t>(used.tv_sec) + seconds + 1);
    ::setrlimit(RLIMIT_CPU, &limit);
}

CommandAnswer answerTo(const Received &received, const Commands &commands)
{
    CommandAnswer answer;
    answer.header.status = HelperStatus::Unsupported;
    const auto row = std::find_if(commands.begin(), commands.end(), [&](const CommandRow &candidate) {
        return candidate.command == received.request.command;
    });
    if (row == commands.end())
        return answer;
    try {
        FileSource source(received.file.get());
        answer = row->answer(source, received.request);
    } catch (const std::exception &) {
        // Memory ran out below the limit, or a library met what it did not expect; the next file may do better.
        answer = {};
        answer.header.status = HelperStatus::OutOfMemory;
    }
    if (answer.payload.size() > received.request.outputLimit) {
        answer = {};
        answer.header.status = HelperStatus::TooLarge;
    }
    return answer;
}

} // namespace

int serveFiles(const SandboxLimits &limits, const Commands &commands)
{
    if (!enterSandbox(limits))
        return 1;
    while (const std::optional<Received> received = receive()) {
        limitCpuTime(received->request.cpuSeconds);
        CommandAnswer answer = answerTo(*received, commands);
        answer.header.id = received->request.id;
        answer.header.byteSize = static_cast<std::uint32_t>(answer.payload.size());
        if (!send(&answer.header, sizeof answer.header) || !send(answer.payload.data(), answer.payload.size()))
            break;
    }
    return 0;
}

} // namespace ostrelle
