#include "app/TerminationSignals.h"

#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace ostrelle {

namespace {

// All that a signal handler may touch. An eventfd and not a blocked signal set, which child processes would inherit.
volatile std::sig_atomic_t g_event = -1;

void onSignal(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_event, &one, sizeof one);
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
    , m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_notifier(std::make_unique<QSocketNotifier>(m_event.get(), QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::uint64_t count = 0;
        if (::read(m_event.get(), &count, sizeof count) == sizeof count)
            Q_EMIT received();
    });
    g_event = m_event.get();
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
}

} // namespace ostrelle
