#include "media_helper/RecordSocket.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace ostrelle {

ssize_t receiveRecord(int socket, void *record, std::size_t size, FileDescriptor &file)
{
    iovec part{record, size};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ssize_t received = 0;
    do {
        received = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    } while (received < 0 && errno == EINTR);
    const cmsghdr *header = received > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (header && header->cmsg_type == SCM_RIGHTS && header->cmsg_len == CMSG_LEN(sizeof(int))) {
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
        file.reset(descriptor);
    }
    return received;
}

bool sendRecord(int socket, const void *bytes, std::size_t size, int file)
{
    iovec part{const_cast<void *>(bytes), size};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (file >= 0) {
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(header), &file, sizeof file);
    }
    while (part.iov_len > 0) {
        const ssize_t sent = ::sendmsg(socket, &message, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        // It goes along with the first byte, once.
        message.msg_control = nullptr;
        message.msg_controllen = 0;
        part.iov_base = static_cast<char *>(part.iov_base) + sent;
        part.iov_len -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace ostrelle
