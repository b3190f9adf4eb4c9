#pragma once

#include "updates/FeedOutcome.h"

#include <cstdint>
#include <string>

namespace ostrelle {

struct FetchedFeed
{
    FeedOutcome outcome = FeedOutcome::Failed;
    std::int32_t status = 0;
    std::string payload; ///< as in FeedReply
};

/// One GET over HTTPS, HTTP/1.1, that tells nothing but the address and `userAgent`: no cookies, no language, no
/// credentials. Redirects are followed to HTTPS only. Takes ten seconds at most. The certificate is checked against the
/// system's authorities, or those of $SSL_CERT_FILE and $SSL_CERT_DIR; $https_proxy and its like are used.
FetchedFeed fetchFeed(const char *address, const char *userAgent);

} // namespace ostrelle
