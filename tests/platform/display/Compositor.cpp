#include "Compositor.h"

#include "PeerClient.h"

#include <QTest>

namespace ostrelle {

Compositor::Compositor() = default;

Compositor::~Compositor()
{
    stop();
}

bool Compositor::start(PeerClient &peer)
{
    m_process.start(QStringLiteral("picom"), {QStringLiteral("--backend"), QStringLiteral("xrender"),
                                              QStringLiteral("--config"), QStringLiteral("/dev/null")});
    return m_process.waitForStarted() && QTest::qWaitFor([&peer] { return peer.hasOwner("_NET_WM_CM_S0"); }, 20'000);
}

void Compositor::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        m_process.waitForFinished();
    }
}

} // namespace ostrelle
