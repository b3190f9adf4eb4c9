#include "media_player/SoundServer.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/proplist.h>

#include <csignal>
#include <sys/resource.h>

namespace ostrelle {
namespace {

struct FreeProperties
{
    void operator()(pa_proplist *properties) const { pa_proplist_free(properties); }
};

/// While one exists no memory can be shared: libpulse has no call to forbid it, but does without where it cannot make a
/// file in memory grow. The server then gets the samples over the socket, and nothing that could change under its eyes.
class NoSharedMemory
{
public:
    NoSharedMemory()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit none{0, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~NoSharedMemory() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    NoSharedMemory(const NoSharedMemory &) = delete;
    NoSharedMemory &operator=(const NoSharedMemory &) = delete;

private:
    rlimit m_before{};
};

} // namespace

std::unique_ptr<SoundServer> SoundServer::connect()
{
    auto server = std::make_unique<SoundServer>(OnlyConnect{});
    if (!server->begin())
        return nullptr;
    for (;;) {
        const pa_context_state_t state = pa_context_get_state(server->m_context);
        if (state == PA_CONTEXT_READY)
            return server;
        if (!PA_CONTEXT_IS_GOOD(state))
            return nullptr;
        server->waitForEvents();
    }
}

SoundServer::SoundServer(OnlyConnect)
    : m_loop(pa_mainloop_new())
{
}

SoundServer::~SoundServer()
{
    if (m_context) {
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
    }
    pa_mainloop_free(m_loop);
}

bool SoundServer::begin()
{
    const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Ostrelle");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, OSTRELLE_APPLICATION_ID);
    {
        const NoSharedMemory whileItIsSetUp;
        m_context = pa_context_new_with_proplist(pa_mainloop_get_api(m_loop), nullptr, properties.get());
    }
    return m_context && pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
}

bool SoundServer::isConnected() const
{
    return pa_context_get_state(m_context) == PA_CONTEXT_READY;
}

void SoundServer::waitForEvents()
{
    pa_mainloop_iterate(m_loop, 1, nullptr);
}

void SoundServer::handleEvents()
{
    while (pa_mainloop_iterate(m_loop, 0, nullptr) > 0) {
    }
}

} // namespace ostrelle
