#pragma once

#include "platform/ActivationToken.h"

namespace ostrelle {

/// What shortcuts do. The token came with the key press and lets the panel have the keyboard.
class ShortcutActions
{
public:
    virtual ~ShortcutActions() = default;

    virtual void toggleNotch(const ActivationToken &token) = 0;
    virtual void openClipboard(const ActivationToken &token) = 0;
    virtual void pickColor(const ActivationToken &token) = 0;
};

} // namespace ostrelle
