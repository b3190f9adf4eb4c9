#pragma once

#include "platform/AlertSound.h"

namespace ostrelle {

class WatchConnection;

/// The bell of the X server, which desktops turn into a sound of their theme.
class X11AlertSound final : public AlertSound
{
public:
    explicit X11AlertSound(WatchConnection &watch);

    void sound() override;

private:
    WatchConnection &m_watch;
};

} // namespace ostrelle
