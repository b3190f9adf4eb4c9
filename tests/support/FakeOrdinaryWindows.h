#pragma once

#include "platform/OrdinaryWindows.h"

#include <QWidget>

namespace ostrelle {

/// Shows windows offscreen and counts how often one was brought to the front.
class FakeOrdinaryWindows final : public OrdinaryWindows
{
public:
    void present(QWidget &window, const ActivationToken &) override
    {
        window.show();
        window.activateWindow();
        ++m_count;
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace ostrelle
