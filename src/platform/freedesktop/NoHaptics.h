#pragma once

#include "platform/Haptics.h"

namespace ostrelle {

/// For hardware that has no tick to give; tells of each at the debug level.
class NoHaptics final : public Haptics
{
public:
    void tick() override;
};

} // namespace ostrelle
