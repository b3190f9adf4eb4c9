#pragma once

#include "foundation/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace ostrelle {

/// The stream socket by which a command talks to the running program; messages are lines.
namespace UnixSocket {

/// Connects to the socket at `path`; nothing when nobody listens there.
FileDescriptor connectTo(const QString &path);
/// Listens at `path`, which is replaced when nobody listens there any more. Folder 0700, socket 0600. To be called only
/// under the lock of the data folder. Not blocking.
FileDescriptor listenAt(const QString &path);
/// The process at the other end belongs to this user (SO_PEERCRED).
bool isSameUser(int descriptor);

bool sendLine(int descriptor, const QByteArray &line, std::chrono::milliseconds deadline);
/// Reads up to the next line feed; nothing when the other end closed, or took longer than `deadline`, or sent more than
/// `cap` bytes.
std::optional<QByteArray> receiveLine(int descriptor, std::chrono::milliseconds deadline, qsizetype cap);
/// Waits until the other end closes; false after `deadline`.
bool waitForEnd(int descriptor, std::chrono::milliseconds deadline);

} // namespace UnixSocket
} // namespace ostrelle
