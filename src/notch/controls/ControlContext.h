#pragma once

namespace ostrelle {

class FrameClock;
class NotchAppearance;

/// What every control of the notch needs: how things look, and when frames come. Both outlive the controls.
struct ControlContext
{
    NotchAppearance &appearance;
    FrameClock &clock;
};

} // namespace ostrelle
