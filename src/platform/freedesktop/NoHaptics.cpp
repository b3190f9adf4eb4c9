#include "platform/freedesktop/NoHaptics.h"

#include <QLoggingCategory>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcHaptics, "ostrelle.platform", QtInfoMsg)

} // namespace

void NoHaptics::tick()
{
    qCDebug(lcHaptics, "An alignment tick, which no device gives");
}

} // namespace ostrelle
