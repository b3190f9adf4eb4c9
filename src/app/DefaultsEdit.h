#pragma once

#include "app/RequestRouter.h"

class QObject;

namespace ostrelle {

class DefaultsDatabase;

/// Adds a verb, "color.add", that edits values of the defaults database. Who asked hears that the edit was done when it
/// is on the disk, as if the command had written it by itself. Nothing is answered when `owner` of the values is gone.
void addDefaultsEdit(RequestRouter &router, const QString &verb, DefaultsDatabase &defaults, const QObject &owner,
                     RequestRouter::Handler edit);

} // namespace ostrelle
