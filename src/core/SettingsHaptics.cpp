#include "core/SettingsHaptics.h"

#include "core/SettingsStore.h"

namespace ostrelle {

SettingsHaptics::SettingsHaptics(const SettingsStore &settings, Haptics &device)
    : m_settings(settings)
    , m_device(device)
{
}

void SettingsHaptics::tick()
{
    if (m_settings.hapticFeedback())
        m_device.tick();
}

} // namespace ostrelle
