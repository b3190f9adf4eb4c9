#pragma once

#include "shortcuts/ShortcutActions.h"

#include <functional>

namespace ostrelle {

class NotchController;

/// The shortcuts' actions on the notch.
class NotchShortcutActions final : public ShortcutActions
{
public:
    /// `sampleColor` starts the sampler once the colour tool is shown; may be empty.
    NotchShortcutActions(NotchController &controller, std::function<void()> sampleColor);

    void toggleNotch(const ActivationToken &token) override;
    void openClipboard(const ActivationToken &token) override;
    void pickColor(const ActivationToken &token) override;

private:
    NotchController &m_controller;
    std::function<void()> m_sampleColor;
};

} // namespace ostrelle
