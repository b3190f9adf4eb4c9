#include "media_helper/HelperService.h"

#include "foundation/FileDescriptor.h"
#include "media_helper/ByteSource.h"
#include "media_helper/RecordSocket.h"

#include <algorithm>
#include <exception>
#include <optional>

namespace ostrelle {
namespace {

struct Received
{
    HelperRequest request;
    FileDescriptor file;
};

/// The next request; nothing when the program has closed the socket, or does not keep to the protocol.
std::optional<Received> receive()
{
    Received received;
    const ssize_t size = receiveRecord(kProgramSocket, &received.request, sizeof received.request, received.file);
    const bool isRequest = size == static_cast<ssize_t>(sizeof received.request) &&
                           received.request.magic == kHelperMagic && received.file;
    return isRequest ? std::optional(std::move(received)) : std::nullopt;
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
        allowCpuTime(received->request.cpuSeconds);
        CommandAnswer answer = answerTo(*received, commands);
        answer.header.id = received->request.id;
        answer.header.byteSize = static_cast<std::uint32_t>(answer.payload.size());
        if (!sendRecord(kProgramSocket, &answer.header, sizeof answer.header) ||
            !sendRecord(kProgramSocket, answer.payload.data(), answer.payload.size()))
            break;
    }
    return 0;
}

} // namespace ostrelle
