#pragma once

#include "notch/Theme.h"
#include "platform/OwnFrame.h"
#include "records/NotchTheme.h"

#include <QImage>
#include <QMargins>

namespace ostrelle {

/// What the first run's window stands on: its shadow, the ground with the theme's light falling from the top edge,
/// where the notch is, the footer with its seam, the rims.
struct OnboardingGround
{
    ColorScheme scheme = ColorScheme::Dark;
    Contrast contrast = Contrast::Normal;
    NotchTheme theme = NotchTheme::Spectrum;
    OwnFrame::Backing backing = OwnFrame::Backing::Translucent;
    QMargins shadowRoom = {}; ///< none: without a shadow

    /// Of the whole window. Some tens of milliseconds at high densities: made once and kept.
    QImage picture(double devicePixelRatio) const;
};

} // namespace ostrelle
