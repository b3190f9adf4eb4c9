#include "notch/NotchAppearance.h"

#include "core/SettingsStore.h"
#include "notch/ThemeGradients.h"
#include "platform/DesktopAppearance.h"

namespace ostrelle {

NotchAppearance::NotchAppearance(SettingsStore &settings, DesktopAppearance &desktop, QObject *parent)
    : QObject(parent)
{
    m_scheme.setBinding([preference = settings.bindableAppearance(), dark = desktop.isDark()] {
        const AppearancePreference wanted = preference.value();
        const bool isDark =
            wanted == AppearancePreference::System ? dark.value() : wanted == AppearancePreference::Dark;
        return isDark ? ColorScheme::Dark : ColorScheme::Light;
    });
    m_contrast.setBinding(
        [more = desktop.prefersMoreContrast()] { return more.value() ? Contrast::Increased : Contrast::Normal; });
    m_theme.setBinding([theme = settings.bindableNotchTheme()] { return theme.value(); });
    m_reducesMotion.setBinding([reduced = desktop.prefersReducedMotion()] { return reduced.value(); });

    const auto notify = [this] { Q_EMIT changed(); };
    m_schemeWatch = m_scheme.addNotifier(notify);
    m_contrastWatch = m_contrast.addNotifier(notify);
    m_themeWatch = m_theme.addNotifier(notify);
    m_motionWatch = m_reducesMotion.addNotifier(notify);
}

QColor NotchAppearance::glow() const
{
    return themeGlow(theme(), scheme());
}

} // namespace ostrelle
