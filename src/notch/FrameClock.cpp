#include "notch/FrameClock.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kDefaultRate = 60;
constexpr double kSlowestRate = 20;
constexpr double kFastestRate = 500;

} // namespace

FrameClock::FrameClock(TaskScheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
{
}

void FrameClock::setRefreshRate(double hertz)
{
    const double rate = hertz >= kSlowestRate && hertz <= kFastestRate ? hertz : kDefaultRate;
    if (rate == m_refreshRate)
        return;
    m_refreshRate = rate;
    if (isRunning())
        start();
}

void FrameClock::add(Client &client)
{
    if (std::find(m_clients.begin(), m_clients.end(), &client) == m_clients.end())
        m_clients.push_back(&client);
    if (!isRunning())
        start();
}

void FrameClock::remove(Client &client)
{
    std::replace(m_clients.begin(), m_clients.end(), &client, static_cast<Client *>(nullptr));
}

void FrameClock::start()
{
    const auto interval = std::chrono::nanoseconds(static_cast<std::int64_t>(1e9 / m_refreshRate));
    m_ticks = m_scheduler.every(interval, this, [this] { tick(); });
}

void FrameClock::tick()
{
    const MonotonicTime frame = now();
    // By index: a client may add others, which move from the next frame on.
    const std::size_t count = m_clients.size();
    for (std::size_t i = 0; i < count; ++i) {
        Client *client = m_clients[i];
        if (client != nullptr && !client->advance(frame) && m_clients[i] == client)
            m_clients[i] = nullptr;
    }
    std::erase(m_clients, nullptr);
    if (m_clients.empty())
        m_ticks.cancel();
}

} // namespace ostrelle
