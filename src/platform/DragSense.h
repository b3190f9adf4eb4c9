#pragma once

#include "platform/PointerNear.h"

#include <QObject>

namespace ostrelle {

/// Whether a drag with data is going on somewhere. Main thread.
class DragSense : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Moves whenever a drag with data begins.
    virtual qint64 changeCount() const = 0;
    /// What changeCount() was at the moment when a button last went down, however late that is told.
    virtual qint64 countAtPress() const = 0;
    /// Whether a pointer button is held.
    virtual Answer isButtonHeld() const = 0;

Q_SIGNALS:
    /// changeCount() has moved.
    void changed();
};

} // namespace ostrelle
