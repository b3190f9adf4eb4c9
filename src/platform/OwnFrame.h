#pragma once

#include <QObject>

namespace ostrelle {

/// The frame of an ordinary window that paints it by itself, inside its widget: an outline, and around it room for a
/// shadow, which is no part of the window for pointer and window manager. After destruction nothing is called; the
/// window keeps what it has. Main thread.
class OwnFrame : public QObject
{
    Q_OBJECT
public:
    /// What becomes of pixels that are not opaque.
    enum class Backing {
        Blurred,     ///< what lies behind the outline shows through, blurred
        Translucent, ///< what lies behind shows through as it is
        Opaque       ///< nothing shows through: the window is cut to the outline, and nothing is seen around it
    };
    Q_ENUM(Backing)

    using QObject::QObject;

    virtual Backing backing() const = 0;

Q_SIGNALS:
    void backingChanged();
};

} // namespace ostrelle
