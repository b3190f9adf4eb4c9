#include "platform/x11/X11AlertSound.h"

#include "platform/x11/WatchConnection.h"

namespace ostrelle {

X11AlertSound::X11AlertSound(WatchConnection &watch)
    : m_watch(watch)
{
}

void X11AlertSound::sound()
{
    constexpr std::int8_t kUsualLoudness = 0;
    xcb_bell(m_watch.xcb(), kUsualLoudness);
    m_watch.flush();
}

} // namespace ostrelle
