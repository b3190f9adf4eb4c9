#pragma once

#include "platform/Haptics.h"

namespace ostrelle {

class FakeHaptics final : public Haptics
{
public:
    void tick() override { ++m_tickCount; }
    int tickCount() const { return m_tickCount; }

private:
    int m_tickCount = 0;
};

} // namespace ostrelle
