#pragma once

#include <memory>

struct pa_context;
struct pa_mainloop;

namespace ostrelle {

/// The connection to the user's sound server, over PulseAudio's native protocol, and the event loop that belongs to it.
class SoundServer
{
    struct OnlyConnect
    {
    };

public:
    /// Waits until the server has let us in; null when there is none, or it refuses. Shares no memory with it.
    static std::unique_ptr<SoundServer> connect();
    explicit SoundServer(OnlyConnect);
    ~SoundServer();
    SoundServer(const SoundServer &) = delete;
    SoundServer &operator=(const SoundServer &) = delete;

    bool isConnected() const;
    pa_context &context() const { return *m_context; }
    pa_mainloop &loop() const { return *m_loop; }

    /// Waits for the next events of the server and of whatever else the loop watches, and handles them.
    void waitForEvents();
    /// Handles those that are there.
    void handleEvents();

private:
    bool begin();

    pa_mainloop *m_loop;
    pa_context *m_context = nullptr;
};

} // namespace ostrelle
