// Speaks the helpers' protocol and misbehaves as the file says. Adds its name to the file $HOME/starts.
#include "media_common/HelperProtocol.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace ostrelle;

bool receive(HelperRequest &request, std::string &content)
{
    iovec part{&request, sizeof request};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    if (recvmsg(STDIN_FILENO, &message, 0) != static_cast<ssize_t>(sizeof request))
        return false;
    int file = -1;
    std::memcpy(&file, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof file);
    std::array<char, 4096> bytes{};
    const ssize_t size = pread(file, bytes.data(), bytes.size(), 0);
    content.assign(bytes.data(), static_cast<std::size_t>(size > 0 ? size : 0));
    close(file);
    return true;
}

void send(const void *bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t sent = ::send(STDIN_FILENO, static_cast<const char *>(bytes) + done, size - done, MSG_NOSIGNAL);
        if (sent <= 0)
            _exit(0);
        done += static_cast<std::size_t>(sent);
    }
}

void answer(const HelperRequest &request, HelperStatus status, std::uint32_t side, std::uint32_t byteSize)
{
    HelperAnswer header;
    header.id = request.id;
    header.status = status;
    header.width = header.height = side;
    header.byteSize = byteSize;
    send(&header, sizeof header);
    const std::vector<std::uint8_t> payload(byteSize, 0x7f);
    send(payload.data(), payload.size());
}

/// The answer that the file holds, but for the number of the request, unless that was changed; and no more.
void say(const HelperRequest &request, std::string bytes)
{
    constexpr std::size_t kId = offsetof(HelperAnswer, id);
    if (bytes.size() >= sizeof(HelperAnswer) && bytes.compare(kId, sizeof request.id, std::string(4, '\0')) == 0)
        std::memcpy(bytes.data() + kId, &request.id, sizeof request.id);
    send(bytes.data(), bytes.size());
    _exit(0);
}

void noteStart(const char *name)
{
    const std::string path = std::string(std::getenv("HOME")) + "/starts";
    const std::string line = std::string(name) + "\n";
    const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        _exit(1);
    close(file);
}

} // namespace

int main(int, char **arguments)
{
    const bool isExtra = std::string(arguments[0]).find("extra") != std::string::npos;
    noteStart(isExtra ? "extra" : "light");
    HelperRequest request;
    std::string content;
    while (receive(request, content)) {
        const auto is = [&content](const char *word) { return content.rfind(word, 0) == 0; };
        if (is("hang"))
            pause();
        else if (is("say "))
            say(request, content.substr(4));
        else if (is("die"))
            abort();
        else if (is("flood"))
            answer(request, HelperStatus::Done, request.side, 64U << 20U);
        else if (is("larger"))
            answer(request, HelperStatus::Done, request.side + 1, 4 * (request.side + 1) * (request.side + 1));
        else if (is("short"))
            answer(request, HelperStatus::Done, request.side, 16);
        else if (is("garbage"))
            send(std::array<char, 400>{}.data(), 400);
        else if (is("twice")) {
            answer(request, HelperStatus::Done, 1, 4);
            answer(request, HelperStatus::Done, 1, 4);
        } else if ((is("extra") || is("unknown")) && !isExtra)
            answer(request, HelperStatus::Declined, 0, 0);
        else if (is("light") && isExtra)
            answer(request, HelperStatus::Unsupported, 0, 0);
        else if (is("unknown"))
            answer(request, HelperStatus::Broken, 0, 0);
        else
            answer(request, HelperStatus::Done, 1, 4);
    }
    return 0;
}
