#pragma once

namespace ostrelle {

/// The platform's alignment tick, performed at once.
class Haptics
{
public:
    virtual ~Haptics() = default;
    virtual void tick() = 0;
};

} // namespace ostrelle
