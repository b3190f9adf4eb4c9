#include "support/FakeOutsideActivity.h"

namespace ostrelle {

void FakeOutsideActivity::activate(const QString &application)
{
    if (m_active != application) {
        m_active = application;
        Q_EMIT otherApplicationActivated();
    }
}

} // namespace ostrelle
