#include "platform/PlatformStart.h"

#include "platform/x11/DisplayProbe.h"

#include <QByteArray>

namespace ostrelle {

std::optional<QString> PlatformStart::prepare(QString *problem)
{
    // The toolkit aborts with a core dump where there is no display, so it is tried here first.
    const QByteArray display = qgetenv("DISPLAY");
    if (!isX11DisplayReachable()) {
        *problem = display.isEmpty()
                       ? QStringLiteral("No display: DISPLAY is not set.")
                       : QStringLiteral("No display: cannot connect to \"%1\".").arg(QString::fromLocal8Bit(display));
        return std::nullopt;
    }

    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    if (chosen.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    } else if (!chosen.startsWith("xcb")) {
        *problem = QStringLiteral("No display: QT_QPA_PLATFORM is \"%1\", only \"xcb\" is supported.")
                       .arg(QString::fromLocal8Bit(chosen));
        return std::nullopt;
    }
    // Without it the accessibility bridge stays away when a screen reader starts later in the session.
    if (!qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")) {
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    }
    return QStringLiteral("x11");
}

} // namespace ostrelle
