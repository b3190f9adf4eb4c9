#pragma once

#include "platform/ActivationToken.h"

#include <QImage>
#include <QObject>
#include <QPainterPath>
#include <QRectF>
#include <QSizeF>

#include <functional>

class QWidget;

namespace ostrelle {

/// What lies behind the panel, without the panel in it: an image of `area` (panel coordinates) reduced to one eighth of
/// its logical size. Empty image: nothing could be captured.
struct BackdropCapture
{
    QImage image;
    QRectF area;
};

/// The window of the notch. It is always on top, on every desktop, takes no focus by being shown, has no taskbar entry,
/// and is always anchored at the top centre of a screen. Coordinates are the panel widget's: logical pixels, y
/// downward. The widget may be larger than the size asked for; the surface belongs at its top centre. Main thread.
class PanelHost : public QObject
{
    Q_OBJECT
public:
    /// Where the blur of the glass comes from.
    enum class Glass {
        Compositor, ///< blurs what is behind the outline by itself
        Snapshot,   ///< translucent window; the panel paints a blurred capture
        None        ///< no translucency: the window is shaped to the outline (a capture can still be painted)
    };
    Q_ENUM(Glass)

    using QObject::QObject;

    /// Prepares the widget as the panel, before it was ever shown. Called once.
    virtual void attach(QWidget &panel) = 0;
    /// Puts the panel, at least `size` large, on the screen of that name, and shows it when it was not shown yet. The
    /// widget has its new size on return.
    virtual void place(const QString &screenName, const QSizeF &size) = 0;
    /// Brings the panel to the front without activating anything.
    virtual void raise() = 0;
    /// While it gives way, a dialog that becomes active comes above the panel: the desktop's choosers would else open
    /// behind it. Afterwards the panel is at the front again.
    virtual void setGivingWay(bool givesWay) = 0;
    /// The only area that takes pointer events; empty: none, everything passes to the window below.
    virtual void setInteractiveRect(const QRectF &rect) = 0;
    /// The outline of what is painted: the region to blur, or the shape of the window.
    virtual void setOutline(const QPainterPath &outline) = 0;

    virtual Glass glass() const = 0;
    virtual bool hasCompositor() const = 0;
    /// Captures what is behind `area`; answers later, on the main thread, unless `context` is gone by then.
    virtual void captureBackdrop(const QRectF &area, QObject *context, std::function<void(BackdropCapture)> answer) = 0;

    /// Asks for the keyboard; keyboardGained or keyboardRefused follows (nothing when it is held already).
    virtual void takeKeyboard(const ActivationToken &token) = 0;
    /// Gives the keyboard back to the window that had it. Nothing when it is not held.
    virtual void releaseKeyboard() = 0;
    /// The panel is the key window. A menu of the panel or a grab elsewhere does not change it.
    virtual bool hasKeyboard() const = 0;

Q_SIGNALS:
    void keyboardGained();
    void keyboardRefused();
    void keyboardLost();
    /// The compositor or its blur came or went.
    void glassChanged();
};

} // namespace ostrelle
