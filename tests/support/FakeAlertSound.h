#pragma once

#include "platform/AlertSound.h"

namespace ostrelle {

class FakeAlertSound final : public AlertSound
{
public:
    void sound() override { ++m_count; }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace ostrelle
