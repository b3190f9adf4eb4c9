#pragma once

#include <QProcess>

namespace ostrelle {

class PeerClient;

/// A compositor that a test starts and ends. Ended with the object.
class Compositor
{
public:
    Compositor();
    ~Compositor();
    Compositor(const Compositor &) = delete;
    Compositor &operator=(const Compositor &) = delete;

    /// Waits until it has taken over.
    bool start(PeerClient &peer);
    void stop();

private:
    QProcess m_process;
};

} // namespace ostrelle
