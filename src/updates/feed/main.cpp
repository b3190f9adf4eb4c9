#include "media_helper/Landlock.h"
#include "media_helper/Sandbox.h"
#include "updates/feed/FeedProtocol.h"
#include "updates/feed/FeedTransfer.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace ostrelle;

bool receive(FeedRequest &request)
{
    return ::recv(STDIN_FILENO, &request, sizeof request, MSG_WAITALL) == sizeof request &&
           request.magic == kFeedMagic && request.address.back() == '\0' && request.userAgent.back() == '\0';
}

bool sendAll(const void *bytes, std::size_t count)
{
    const auto *at = static_cast<const char *>(bytes);
    while (count > 0) {
        const ssize_t sent = ::send(STDIN_FILENO, at, count, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        at += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

/// Where names and certificates are looked up, some systems' by links from /etc to elsewhere. Of the user's, only the
/// authorities that the environment names.
std::vector<std::string> readable()
{
    std::vector<std::string> paths{"/etc", "/usr", "/lib",       "/lib64",
                                   "/run", "/dev", "/nix/store", "/var/lib/ca-certificates"};
    if (const std::unique_ptr<char, decltype(&std::free)> servers(::realpath("/etc/resolv.conf", nullptr), &std::free);
        servers)
        paths.emplace_back(servers.get());
    if (const char *file = std::getenv("SSL_CERT_FILE"))
        paths.emplace_back(file);
    if (const char *folders = std::getenv("SSL_CERT_DIR")) {
        std::istringstream list(folders);
        for (std::string folder; std::getline(list, folder, ':');)
            paths.push_back(folder);
    }
    return paths;
}

/// What a server might make of this process stays in it: it starts nothing, writes nothing and reads nothing of the
/// user's.
void shutIn()
{
    constexpr rlimit kNone{0, 0};
    ::setrlimit(RLIMIT_CORE, &kNone);
    ::setrlimit(RLIMIT_FSIZE, &kNone);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0)
        confineFileAccess(readable());
}

} // namespace

int main()
{
    std::signal(SIGPIPE, SIG_IGN);
    FeedRequest request;
    if (!closeOtherDescriptors() || !receive(request))
        return EXIT_FAILURE;
    shutIn();
    FetchedFeed feed = fetchFeed(request.address.data(), request.userAgent.data());
    feed.payload.resize(std::min<std::size_t>(feed.payload.size(), kLargestFeed));
    FeedReply reply;
    reply.outcome = feed.outcome;
    reply.status = feed.status;
    reply.byteSize = static_cast<std::uint32_t>(feed.payload.size());
    return sendAll(&reply, sizeof reply) && sendAll(feed.payload.data(), feed.payload.size()) ? EXIT_SUCCESS
                                                                                              : EXIT_FAILURE;
}
