#include "updates/feed/FeedTransfer.h"

#include "updates/feed/FeedProtocol.h"

#include <curl/curl.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace ostrelle {
namespace {

constexpr long kOk = 200;
/// The program has given up by then, or is gone.
constexpr long kMilliseconds = 10'000;
constexpr long kMostRedirects = 5;

using Handle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

long statusOf(CURL *handle)
{
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

struct Body
{
    CURL *handle = nullptr;
    std::string bytes;
    bool isTooLarge = false;
};

/// Ends the transfer, by taking less than is offered, when the rest is not wanted.
std::size_t take(const char *bytes, std::size_t, std::size_t count, void *user)
{
    auto &body = *static_cast<Body *>(user);
    if (statusOf(body.handle) != kOk)
        return 0;
    body.isTooLarge = body.bytes.size() + count > kLargestFeed;
    if (body.isTooLarge)
        return 0;
    body.bytes.append(bytes, count);
    return count;
}

void setUp(CURL *handle, const char *address, const char *userAgent)
{
    curl_easy_setopt(handle, CURLOPT_URL, address);
    curl_easy_setopt(handle, CURLOPT_USERAGENT, userAgent);
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "https");
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, "https");
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kMostRedirects);
    curl_easy_setopt(handle, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    curl_easy_setopt(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    curl_easy_setopt(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, kMilliseconds);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    if (const char *file = std::getenv("SSL_CERT_FILE"))
        curl_easy_setopt(handle, CURLOPT_CAINFO, file);
    if (const char *folder = std::getenv("SSL_CERT_DIR"))
        curl_easy_setopt(handle, CURLOPT_CAPATH, folder);
}

FetchedFeed failed(const std::string &reason)
{
    return {FeedOutcome::Failed, 0, reason + '.'};
}

} // namespace

FetchedFeed fetchFeed(const char *address, const char *userAgent)
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
    const Handle handle(curl_easy_init(), curl_easy_cleanup);
    if (!handle)
        return failed("Out of memory");
    Body body{handle.get(), {}, false};
    std::array<char, CURL_ERROR_SIZE> error{};
    setUp(handle.get(), address, userAgent);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, take);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, error.data());

    const CURLcode result = curl_easy_perform(handle.get());
    const long status = statusOf(handle.get());
    if (body.isTooLarge || result == CURLE_WEIRD_SERVER_REPLY)
        return {FeedOutcome::Unreadable, 0, {}};
    if (result == CURLE_OK || (result == CURLE_WRITE_ERROR && status != kOk))
        return {FeedOutcome::Answered, static_cast<std::int32_t>(status), body.bytes};
    // Before any answer it is one without a head, as of HTTP 0.9; after one, what that one points to.
    if (result == CURLE_UNSUPPORTED_PROTOCOL && status == 0)
        return {FeedOutcome::Unreadable, 0, {}};
    if (result == CURLE_UNSUPPORTED_PROTOCOL)
        return failed("The update server led to an address that is not HTTPS");
    return failed(error.front() != '\0' ? error.data() : curl_easy_strerror(result));
}

} // namespace ostrelle
