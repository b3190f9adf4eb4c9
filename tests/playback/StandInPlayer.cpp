// Speaks the players' protocol and misbehaves as the file says.
#include "media_common/PlaybackProtocol.h"

#include <array>
#include <cstring>
#include <limits>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace ostrelle;

/// What the file holds, once there is one.
std::string receive()
{
    PlaybackCommand command;
    iovec part{&command, sizeof command};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    if (recvmsg(STDIN_FILENO, &message, 0) != static_cast<ssize_t>(sizeof command) || !CMSG_FIRSTHDR(&message))
        _exit(1);
    int file = -1;
    std::memcpy(&file, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof file);
    std::array<char, 64> bytes{};
    const ssize_t size = pread(file, bytes.data(), bytes.size(), 0);
    return {bytes.data(), static_cast<std::size_t>(size > 0 ? size : 0)};
}

void report(PlaybackEvent event, double position = 0, double length = 10)
{
    PlaybackReport record;
    record.event = event;
    record.position = position;
    record.length = length;
    send(STDIN_FILENO, &record, sizeof record, MSG_NOSIGNAL);
}

} // namespace

int main()
{
    const std::string content = receive();
    if (content == "die")
        abort();
    if (content == "garbage") {
        constexpr std::array<char, 4000> kGarbage{};
        send(STDIN_FILENO, kGarbage.data(), kGarbage.size(), MSG_NOSIGNAL);
    }
    if (content == "decline")
        report(PlaybackEvent::Declined);
    if (content == "unknown")
        report(static_cast<PlaybackEvent>(77));
    if (content == "not a number")
        report(PlaybackEvent::Started, 0, std::numeric_limits<double>::quiet_NaN());
    if (content == "for ever")
        report(PlaybackEvent::Started, 0, std::numeric_limits<double>::infinity());
    if (content == "leave") {
        report(PlaybackEvent::Started);
        return 0;
    }
    if (content == "fall silent") {
        report(PlaybackEvent::Started);
        report(PlaybackEvent::Moved, 1);
    }
    for (;;)
        pause();
}
