#include "platform/Platform.h"

#include "platform/x11/X11Platform.h"

#include <QString>

namespace ostrelle {

std::unique_ptr<Platform> Platform::create(const QString &backend, const QString &keeperPath)
{
    return backend == QLatin1String("x11") ? X11Platform::create(keeperPath) : nullptr;
}

} // namespace ostrelle
