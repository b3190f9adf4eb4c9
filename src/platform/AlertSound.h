#pragma once

namespace ostrelle {

/// The desktop's alert: heard, seen or neither, as the user has set it up.
class AlertSound
{
public:
    virtual ~AlertSound() = default;
    virtual void sound() = 0;
};

} // namespace ostrelle
