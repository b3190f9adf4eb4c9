#pragma once

#include "foundation/Task.h"
#include "foundation/TaskScheduler.h"

#include <QObject>

#include <vector>

namespace ostrelle {

/// Calls whatever moves in one window once per frame, at the screen's refresh rate, and has no timer while nothing
/// moves. Main thread; outlives its clients.
class FrameClock : public QObject
{
    Q_OBJECT
public:
    /// Something that moves. It leaves the clock by remove() before it is destroyed.
    class Client
    {
    public:
        virtual ~Client() = default;
        /// Takes its state at `now`; false when it came to rest and needs no further frames.
        virtual bool advance(MonotonicTime now) = 0;
    };

    explicit FrameClock(TaskScheduler &scheduler, QObject *parent = nullptr);

    MonotonicTime now() const { return m_scheduler.now(); }
    bool isRunning() const { return m_ticks.isPending(); }
    /// In hertz; a rate that no screen has counts as 60.
    void setRefreshRate(double hertz);

    /// Calls `client` from the next frame on until it rests. Adding it twice is fine.
    void add(Client &client);
    void remove(Client &client);

private:
    void start();
    void tick();

    TaskScheduler &m_scheduler;
    double m_refreshRate = 60;
    Task m_ticks;
    /// A client that left during a frame stays as null until the frame is over.
    std::vector<Client *> m_clients;
};

} // namespace ostrelle
