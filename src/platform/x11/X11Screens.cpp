#include "platform/x11/X11Screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace ostrelle {

X11Screens::X11Screens(WatchConnection &watch, QObject *parent)
    : Screens(parent)
    , m_topBars(watch)
{
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        follow(screen);
        scheduleRead();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &X11Screens::scheduleRead);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &X11Screens::scheduleRead);
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens) {
        follow(screen);
    }
    m_subscription = watch.onEvent([this, root = watch.root()](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
            if (notify.window == root && m_topBars.dependsOn(notify.atom)) {
                scheduleRead();
            }
        }
    });
    read();
}

std::optional<Screen> X11Screens::primary() const
{
    const std::optional<Screen> chosen = named(m_primaryName);
    return chosen || m_all.isEmpty() ? chosen : m_all.first();
}

void X11Screens::follow(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &X11Screens::scheduleRead);
    connect(screen, &QScreen::availableGeometryChanged, this, &X11Screens::scheduleRead);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &X11Screens::scheduleRead);
    connect(screen, &QScreen::refreshRateChanged, this, &X11Screens::scheduleRead);
}

void X11Screens::scheduleRead()
{
    if (!std::exchange(m_isReadScheduled, true)) {
        QMetaObject::invokeMethod(this, &X11Screens::read, Qt::QueuedConnection);
    }
}

void X11Screens::read()
{
    m_isReadScheduled = false;
    m_topBars.read();
    const QList<QScreen *> screens = QGuiApplication::screens();
    QList<Screen> all;
    for (const QScreen *screen : screens) {
        if (screen->geometry().isEmpty()) {
            continue; // stands in while there is no monitor
        }
        Screen value;
        value.name = screen->name();
        value.frame = screen->geometry();
        value.scale = screen->devicePixelRatio();
        value.refreshRate = screen->refreshRate();
        value.topBarHeight =
            m_topBars.heightOn(QRectF(value.frame.topLeft(), value.frame.size() * value.scale)) / value.scale;
        if (m_topBars.isEmpty() && screens.size() == 1) { // some desktops tell only the work area, right for one screen
            value.topBarHeight = screen->availableGeometry().y() - screen->geometry().y();
        }
        all.append(value);
    }
    const QScreen *primaryScreen = QGuiApplication::primaryScreen();
    const QString primaryName = primaryScreen ? primaryScreen->name() : QString();
    if (all != m_all || primaryName != m_primaryName) {
        m_all = all;
        m_primaryName = primaryName;
        Q_EMIT changed();
    }
}

} // namespace ostrelle
