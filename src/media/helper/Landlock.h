#pragma once

#include <string>
#include <vector>

namespace ostrelle {

/// Takes every access to files by path from this process, but reading `readable`, files and what is below folders
/// (Linux, Landlock: its own documentation "unprivileged access control"). True when the kernel has done so; false
/// where it has no Landlock. Needs PR_SET_NO_NEW_PRIVS.
bool confineFileAccess(const std::vector<std::string> &readable);

} // namespace ostrelle
