#pragma once

#include "platform/OutsideActivity.h"

#include <QString>

namespace ostrelle {

/// Activity that a test performs.
class FakeOutsideActivity final : public OutsideActivity
{
    Q_OBJECT
public:
    using OutsideActivity::OutsideActivity;

    void disregardPast() override {} // nothing here is ever still being identified

    void press() { Q_EMIT pressedOutside(); }
    /// The user goes to a window of that application; a return to the one that was last active is none.
    void activate(const QString &application);

private:
    QString m_active;
};

} // namespace ostrelle
