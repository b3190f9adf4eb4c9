#pragma once

#include "platform/OutsideActivity.h"
#include "platform/x11/ActivationWatch.h"

#include <QAbstractNativeEventFilter>
#include <QList>

#include <xcb/xcb.h>

namespace ostrelle {

class WatchConnection;
class X11RawPointer;

/// Raw presses carry no window, so the one under the pointer is asked for at once; a press that the toolkit received in
/// one of its windows at the same server time was inside, whatever has closed since.
class X11OutsideActivity final : public OutsideActivity, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    X11OutsideActivity(WatchConnection &watch, X11RawPointer &pointer, QObject *parent = nullptr);
    ~X11OutsideActivity() override;

    void disregardPast() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    struct Press
    {
        quint32 time; ///< of the server
        int epoch;
    };

    /// Looks for a window of this program under the pointer, from `window` downward: managed windows lie in frames.
    void look(xcb_window_t window, Press press, int depth);
    void settle(Press press);

    WatchConnection &m_watch;
    int m_inputOpcode = 0;
    int m_epoch = 0;             ///< moves with disregardPast()
    QList<quint32> m_ownPresses; ///< server times of the last presses in this program's windows
    ActivationWatch m_activation;
};

} // namespace ostrelle
