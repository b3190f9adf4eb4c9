#include "platform/x11/DisplayLoss.h"

#include "platform/x11/ToolkitConnection.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace ostrelle {

namespace {

DisplayLoss *theLoss = nullptr; // what the C library's and the toolkit's hooks can reach

} // namespace

DisplayLoss::DisplayLoss()
{
    Q_ASSERT(!theLoss);
    theLoss = this;
    m_previousMessageHandler = qInstallMessageHandler(&DisplayLoss::handleMessage);
    static const int kIsRegistered = std::atexit(&DisplayLoss::handleExit);
    Q_UNUSED(kIsRegistered)
}

DisplayLoss::~DisplayLoss()
{
    // A handler installed later stays; ours would have forwarded to the previous one.
    const QtMessageHandler current = qInstallMessageHandler(m_previousMessageHandler);
    if (current != &DisplayLoss::handleMessage) {
        qInstallMessageHandler(current);
    }
    theLoss = nullptr;
}

void DisplayLoss::end()
{
    static constexpr char kLine[] = "Display connection lost.\n";
    if (write(STDERR_FILENO, kLine, sizeof kLine - 1) < 0) {
        // Nobody reads it.
    }
    if (const auto handler = std::exchange(m_handler, {})) {
        handler();
    }
    _exit(EXIT_FAILURE);
}

void DisplayLoss::handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (theLoss && message.startsWith(QLatin1String("The X11 connection broke"))) {
        theLoss->end();
    }
    if (theLoss && theLoss->m_previousMessageHandler) {
        theLoss->m_previousMessageHandler(type, context, message);
    } else {
        const QByteArray line = qFormatLogMessage(type, context, message).toLocal8Bit() + '\n';
        if (write(STDERR_FILENO, line.constData(), static_cast<std::size_t>(line.size())) < 0) {
            // Nobody reads it.
        }
    }
}

void DisplayLoss::handleExit()
{
    xcb_connection_t *connection = theLoss ? toolkitConnection() : nullptr;
    if (connection && xcb_connection_has_error(connection)) {
        theLoss->end();
    }
}

} // namespace ostrelle
