#pragma once

#include "platform/Haptics.h"

namespace ostrelle {

class SettingsStore;

/// The desktop's haptics, silent while the user has switched them off. Main thread.
class SettingsHaptics final : public Haptics
{
public:
    SettingsHaptics(const SettingsStore &settings, Haptics &device);

    void tick() override;

private:
    const SettingsStore &m_settings;
    Haptics &m_device;
};

} // namespace ostrelle
