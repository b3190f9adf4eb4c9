#pragma once

#include "foundation/SerialQueue.h"

#include <QByteArrayList>
#include <QObject>

#include <functional>
#include <optional>

namespace ostrelle {

/// Starts programs that live on their own, from a background thread. Main thread.
///
/// A program gets the environment that this one was started with (not what was changed since, for this one's own use),
/// a session of its own, no descriptors but /dev/null for input, output and errors, and default signals. It goes on
/// when this program ends; a status is collected when it ends before, so that no zombie stays.
class ProgramStarter final : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// `command` is found in PATH. `variables` ("NAME=value") replace those of the same names; one that is empty is
    /// left out. `ended` gets the exit status, 128 plus the signal that ended it, or none when it could not be started;
    /// it is not called after this object's end.
    void start(const QByteArrayList &command, const QByteArrayList &variables,
               std::function<void(std::optional<int>)> ended);

private:
    void watch(int processDescriptor, std::function<void(std::optional<int>)> ended);

    SerialQueue m_queue; // last: its jobs end before anything else here
};

} // namespace ostrelle
