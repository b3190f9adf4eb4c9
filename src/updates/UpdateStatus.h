#pragma once

#include <QString>

namespace ostrelle {

class SettingsStore;
class UpdateService;

/// What the user reads about updates.
struct UpdateStatus
{
    QString title;
    QString subtitle; ///< may be empty

    static UpdateStatus of(const UpdateService &service, const SettingsStore &settings);
};

} // namespace ostrelle
