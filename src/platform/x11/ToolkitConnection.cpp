#include "platform/x11/ToolkitConnection.h"

#include <QGuiApplication>

namespace ostrelle {

xcb_connection_t *toolkitConnection()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

} // namespace ostrelle
