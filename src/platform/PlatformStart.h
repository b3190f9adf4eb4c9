#pragma once

#include <QString>

#include <optional>

namespace ostrelle {

/// Runs before the application object exists: chooses the backend and sets the toolkit's variables for it.
class PlatformStart
{
public:
    /// The name of the backend ("x11"), or nothing with `problem` set to one line for the user.
    static std::optional<QString> prepare(QString *problem);
};

} // namespace ostrelle
