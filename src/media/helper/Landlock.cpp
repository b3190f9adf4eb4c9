#include "media_helper/Landlock.h"

#include "foundation/FileDescriptor.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace ostrelle {
namespace {

constexpr std::uint64_t kReading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;

/// Every right of the first version.
constexpr std::uint64_t kFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;
/// What later versions added, by number; older headers do not name them.
constexpr std::uint64_t kRefer = 1U << 13U;    // version 2
constexpr std::uint64_t kTruncate = 1U << 14U; // version 3
constexpr std::uint64_t kIoctl = 1U << 15U;    // version 5

std::uint64_t handledBy(long version)
{
    std::uint64_t handled = kFirstVersion;
    if (version >= 2)
        handled |= kRefer;
    if (version >= 3)
        handled |= kTruncate;
    if (version >= 5)
        handled |= kIoctl;
    return handled;
}

} // namespace

bool confineFileAccess(const std::vector<std::string> &readable)
{
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return false;
    landlock_ruleset_attr rules{};
    rules.handled_access_fs = handledBy(version);
    const FileDescriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules.handled_access_fs, 0)));
    if (!ruleset)
        return false;
    for (const std::string &path : readable) {
        const FileDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
        struct stat facts;
        if (!place || ::fstat(place.get(), &facts) != 0)
            continue;
        landlock_path_beneath_attr below{};
        below.allowed_access = S_ISDIR(facts.st_mode) ? kReading : LANDLOCK_ACCESS_FS_READ_FILE;
        below.parent_fd = place.get();
        ::syscall(SYS_landlock_add_rule, ruleset.get(), LANDLOCK_RULE_PATH_BENEATH, &below, 0);
    }
    return ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

} // namespace ostrelle
