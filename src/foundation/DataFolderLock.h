#pragma once

#include "foundation/FileDescriptor.h"

#include <QString>

#include <optional>
#include <utility>

namespace ostrelle {

/// The lock of a data folder: whoever holds it may edit the stores in it. Held by the running program for its whole
/// life and by a command that edits a store. An advisory flock() on "lock", released by the kernel however the process
/// ends; the file stays.
class [[nodiscard]] DataFolderLock
{
public:
    enum class Failure { HeldByOther, Unavailable };

    /// Takes the lock of `folder` (created when missing) or says why not. Does not wait.
    static std::optional<DataFolderLock> tryTake(const QString &folder, Failure *failure = nullptr);

    /// Takes over a lock that another program image of this process held and passed on by passOn().
    static DataFolderLock adopt(int descriptor);
    /// Gives up ownership without unlocking: the descriptor is open in the next program image too.
    int passOn();

private:
    explicit DataFolderLock(FileDescriptor descriptor)
        : m_descriptor(std::move(descriptor))
    {
    }

    FileDescriptor m_descriptor;
};

} // namespace ostrelle
