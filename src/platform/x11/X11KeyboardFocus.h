#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>
#include <vector>

#include <xcb/xcb.h>

namespace ostrelle {

class WatchConnection;

/// Takes the X input focus for one window and gives it back to the window that had it.
///
/// Whether it is held comes from the server's focus events. The toolkit's own notion is misleading: it reports a loss
/// while a hot key is held down, and sees a real one 100 ms late.
class X11KeyboardFocus final : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    explicit X11KeyboardFocus(WatchConnection &watch, QObject *parent = nullptr);
    ~X11KeyboardFocus() override;

    /// The window this is about; a new one does not have the focus.
    void setWindow(xcb_window_t window);
    /// The window must be mapped as far as the server knows.
    void take();
    void giveBack();
    bool isHeld() const { return m_isHeld; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    void gained();
    void refused();
    void lost();

private:
    void setHeld(bool held);
    /// Focuses the last of `candidates` that can take it, else leaves it to the pointer.
    void giveTo(std::vector<xcb_window_t> candidates, int attempt);
    /// When the window that had the focus is gone: the topmost other window that can take it.
    void giveToTopmost(int attempt);
    /// Sets the focus and calls `then` with the window that has it afterwards.
    void setFocus(xcb_window_t window, std::function<void(xcb_window_t)> then);

    WatchConnection &m_watch;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_window_t m_previous = XCB_WINDOW_NONE;
    int m_attempt = 0; ///< a later take() or giveBack() ends what an earlier one still does
    bool m_isHeld = false;
    bool m_isGivingBack = false;
};

} // namespace ostrelle
