#pragma once

#include "shortcuts/ShortcutActions.h"

#include <functional>

namespace ostrelle {

class NotchController;

/// The shortcuts' actions on the notch. They rest while a colour is being sampled: the loupe has the keyboard, and what
/// would open under it is not what is being looked at.
class NotchShortcutActions final : public ShortcutActions
{
public:
    struct Sampler
    {
        std::function<bool()> isSampling;
        std::function<void()> sample; ///< called when the colour tool is shown
    };

    NotchShortcutActions(NotchController &controller, Sampler sampler);

    void toggleNotch(const ActivationToken &token) override;
    void openClipboard(const ActivationToken &token) override;
    void pickColor(const ActivationToken &token) override;

private:
    NotchController &m_controller;
    Sampler m_sampler;
};

} // namespace ostrelle
