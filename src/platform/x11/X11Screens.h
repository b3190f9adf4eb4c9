#pragma once

#include "platform/Screens.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11TopBars.h"

class QScreen;

namespace ostrelle {

/// The toolkit's screens, one per RandR monitor, with the top bars that it gets wrong.
class X11Screens final : public Screens
{
    Q_OBJECT
public:
    explicit X11Screens(WatchConnection &watch, QObject *parent = nullptr);

    QList<Screen> all() const override { return m_all; }
    std::optional<Screen> primary() const override;

private:
    void follow(QScreen *screen);
    /// Several changes in one pass of the event loop are read once.
    void scheduleRead();
    void read();

    X11TopBars m_topBars;
    QList<Screen> m_all;
    QString m_primaryName;
    bool m_isReadScheduled = false;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
