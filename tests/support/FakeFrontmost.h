#pragma once

#include "platform/Frontmost.h"

namespace ostrelle {

class FakeFrontmost final : public Frontmost
{
public:
    std::optional<Application> application() const override { return m_application; }
    void set(std::optional<Application> application) { m_application = std::move(application); }

private:
    std::optional<Application> m_application;
};

} // namespace ostrelle
