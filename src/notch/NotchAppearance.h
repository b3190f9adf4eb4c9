#pragma once

#include "notch/Theme.h"
#include "records/AppearancePreference.h"
#include "records/NotchTheme.h"

#include <QObject>
#include <QProperty>

namespace ostrelle {

class DesktopAppearance;
class SettingsStore;

/// How everything in the notch looks at the moment: what the settings say and, where they leave it open, the desktop.
/// Main thread.
class NotchAppearance : public QObject
{
    Q_OBJECT
public:
    NotchAppearance(SettingsStore &settings, DesktopAppearance &desktop, QObject *parent = nullptr);

    ColorScheme scheme() const { return m_scheme.value(); }
    Contrast contrast() const { return m_contrast.value(); }
    NotchTheme theme() const { return m_theme.value(); }
    /// Movement is replaced by short fades.
    bool reducesMotion() const { return m_reducesMotion.value(); }

    const Theme::Palette &palette() const { return Theme::palette(scheme(), contrast()); }
    /// The theme's colour of glows.
    QColor glow() const;

Q_SIGNALS:
    void changed();

private:
    QProperty<ColorScheme> m_scheme{ColorScheme::Dark};
    QProperty<Contrast> m_contrast{Contrast::Normal};
    QProperty<NotchTheme> m_theme{NotchTheme::Spectrum};
    QProperty<bool> m_reducesMotion{false};
    QPropertyNotifier m_schemeWatch;
    QPropertyNotifier m_contrastWatch;
    QPropertyNotifier m_themeWatch;
    QPropertyNotifier m_motionWatch;
};

} // namespace ostrelle
