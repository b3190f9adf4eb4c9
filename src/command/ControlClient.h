#pragma once

#include "command/CommandTable.h"
#include "foundation/FileDescriptor.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

namespace ostrelle {

/// What the running program said to a request.
struct ControlAnswer
{
    ExitStatus status = ExitStatus::Failed;
    QJsonValue result;
    QString error; ///< one line, when the status is not Done
};

/// A connection to the running program.
class ControlClient
{
public:
    /// Nothing when no program of this user is listening.
    static std::optional<ControlClient> connect();

    enum class Patience { ForTheProgram, ForTheUser }; ///< ForTheUser: who may take all day

    /// Sends {"verb": verb, ...arguments} and waits for the answer; Failed with a reason when none comes in time.
    ControlAnswer ask(const QString &verb, QJsonObject arguments = {}, Patience patience = Patience::ForTheProgram);
    /// After "quit": waits until the program has ended.
    bool waitForEnd();

private:
    explicit ControlClient(FileDescriptor descriptor);

    FileDescriptor m_descriptor;
};

} // namespace ostrelle
