#pragma once

#include <QObject>

namespace ostrelle {

/// What the user does elsewhere. Main thread.
class OutsideActivity : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// What was noticed before this call, and is still being identified, is not told any more.
    virtual void disregardPast() = 0;

Q_SIGNALS:
    /// A pointer button (no wheel) went down outside this program's windows (the panel's transparent rest is outside).
    void pressedOutside();
    /// Another ordinary application became active: no dock, no desktop, not this program, not the one that was last
    /// active before.
    void otherApplicationActivated();
};

} // namespace ostrelle
