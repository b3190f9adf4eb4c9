#pragma once

#include "platform/DesktopAppearance.h"

namespace ostrelle {

/// A desktop that a test repaints; starts as one without a portal.
class FakeDesktopAppearance final : public DesktopAppearance
{
    Q_OBJECT
public:
    using DesktopAppearance::DesktopAppearance;

    QBindable<bool> isDark() override { return &m_isDark; }
    QBindable<bool> prefersMoreContrast() override { return &m_prefersMoreContrast; }
    QBindable<bool> prefersReducedMotion() override { return &m_prefersReducedMotion; }

    void setDark(bool dark) { m_isDark = dark; }
    void setPrefersMoreContrast(bool more) { m_prefersMoreContrast = more; }
    void setPrefersReducedMotion(bool reduced) { m_prefersReducedMotion = reduced; }

private:
    QProperty<bool> m_isDark{true};
    QProperty<bool> m_prefersMoreContrast{false};
    QProperty<bool> m_prefersReducedMotion{false};
};

} // namespace ostrelle
