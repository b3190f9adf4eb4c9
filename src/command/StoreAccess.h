#pragma once

#include "command/ControlClient.h"
#include "foundation/DataFolderLock.h"

#include <optional>
#include <variant>

namespace ostrelle {

/// Who does the work of a command that reads or edits a store: the running program, or this process under the lock of
/// the data folder, or nobody, with one line why.
using StoreAccess = std::variant<ControlClient, DataFolderLock, QString>;

/// Waits a moment for a program that is just starting or another command that is just editing.
StoreAccess accessStores();

/// Once a store has been read: that it cannot be written is told by the command, in one line of its own.
void muteStoreWarnings();

} // namespace ostrelle
