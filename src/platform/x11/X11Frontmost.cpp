#include "platform/x11/X11Frontmost.h"

#include "platform/x11/XcbReply.h"

#include "foundation/SerialQueue.h"
#include "foundation/TaskScheduler.h"
#include "platform/freedesktop/DesktopFileIndex.h"
#include "platform/freedesktop/ProcessIdentity.h"
#include "platform/x11/X11WindowFacts.h"

#include <QPointer>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// Past it, an application is known by its window class alone, or not at all.
constexpr auto kIdentificationDeadline = 1s;
constexpr std::size_t kRemembered = 16;

/// Adds property changes of the root window to what the connection already listens to there.
void listenToRoot(WatchConnection &connection)
{
    xcb_connection_t *xcb = connection.xcb();
    const auto cookie = xcb_get_window_attributes(xcb, connection.root());
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(xcb, cookie, nullptr));
    const std::uint32_t mask = (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, connection.root(), XCB_CW_EVENT_MASK, &mask);
    connection.flush();
}

} // namespace

struct X11Frontmost::Activation
{
    using Waiter = std::pair<QPointer<QObject>, std::function<void(std::optional<Application>)>>;

    quint64 id = 0;
    xcb_window_t window = XCB_WINDOW_NONE;
    std::optional<Application> application;
    bool isSettled = false;
    std::unique_ptr<X11WindowFacts> facts;
    Task deadline;
    std::vector<Waiter> waiters;
};

X11Frontmost::X11Frontmost(WatchConnection &connection, TaskScheduler &scheduler)
    : m_connection(connection)
    , m_scheduler(scheduler)
    , m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW"))
    , m_desktopFiles(std::make_unique<DesktopFileIndex>(DesktopFileIndex::standardFolders()))
    , m_queue(std::make_unique<SerialQueue>())
{
    X11WindowFacts::prepare(m_connection);
    listenToRoot(m_connection);
    m_events = m_connection.onEvent([this](const xcb_generic_event_t &event) { handleEvent(event); });
    askForActiveWindow();
}

X11Frontmost::~X11Frontmost() = default;

std::optional<Application> X11Frontmost::application() const
{
    const auto known = std::find_if(m_activations.rbegin(), m_activations.rend(),
                                    [](const Activation &activation) { return activation.isSettled; });
    return known != m_activations.rend() ? known->application : std::nullopt;
}

void X11Frontmost::whenKnown(quint64 activation, QObject *context,
                             std::function<void(std::optional<Application>)> answer)
{
    Activation *asked = find(activation);
    if (asked && !asked->isSettled) {
        asked->waiters.emplace_back(context, std::move(answer));
        return;
    }
    QMetaObject::invokeMethod(
        context,
        [answer = std::move(answer), application = asked ? asked->application : std::nullopt] { answer(application); },
        Qt::QueuedConnection);
}

void X11Frontmost::handleEvent(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (notify.window == m_connection.root() && notify.atom == m_activeWindow) {
        askForActiveWindow();
    }
}

void X11Frontmost::askForActiveWindow()
{
    forgetOldOnes();
    const quint64 id = ++m_newest;
    Activation &activation = m_activations.emplace_back();
    activation.id = id;
    const auto cookie =
        xcb_get_property(m_connection.xcb(), 0, m_connection.root(), m_activeWindow, XCB_ATOM_WINDOW, 0, 1);
    m_connection.whenReplied(cookie.sequence, [guard = QPointer<X11Frontmost>(this), id](const void *reply) {
        if (guard) {
            guard->handleActiveWindow(id, reply);
        }
    });
}

void X11Frontmost::handleActiveWindow(quint64 id, const void *reply)
{
    const auto *property = static_cast<const xcb_get_property_reply_t *>(reply);
    xcb_window_t window = XCB_WINDOW_NONE;
    if (property && property->format == 32 && xcb_get_property_value_length(property) >= 4) {
        std::memcpy(&window, xcb_get_property_value(property), sizeof window);
    }
    const auto current = std::find_if(m_activations.begin(), m_activations.end(),
                                      [id](const Activation &activation) { return activation.id == id; });
    if (current == m_activations.end()) {
        return;
    }
    const bool isFirst = current == m_activations.begin();
    if (window == XCB_WINDOW_NONE || m_connection.isOwn(window)) {
        if (isFirst) {
            settle(id, std::nullopt);
            return;
        }
        current->window = std::prev(current)->window;
        whenKnown(std::prev(current)->id, this,
                  [this, id](const std::optional<Application> &application) { settle(id, application); });
        return;
    }
    current->window = window;
    current->deadline = m_scheduler.after(kIdentificationDeadline, this, [this, id] {
        if (Activation *late = find(id); late && late->facts) {
            settle(id, applicationOf(late->facts->facts()));
        }
    });
    current->facts = std::make_unique<X11WindowFacts>(
        m_connection, window, [this, id](const ApplicationFacts &facts, qint64 pid) { identify(id, facts, pid); });
}

void X11Frontmost::identify(quint64 id, const ApplicationFacts &windowFacts, qint64 pid)
{
    // The queue ends before the members it uses, and posted calls end with this object.
    m_queue->post([this, id, facts = windowFacts, pid]() mutable {
        if (pid > 0) {
            const ProcessIdentity process = ProcessIdentity::ofProcess(pid);
            facts.sandboxId = process.flatpakId;
            facts.snapName = process.snapName;
            facts.scopeId = process.scopeId;
            facts.executable = process.executable;
        }
        // Not by the executable: that of a script is its interpreter.
        const std::optional<DesktopFileIndex::Entry> entry = m_desktopFiles->find(
            {facts.sandboxId, facts.toolkitId, facts.className, facts.classInstance, facts.scopeId});
        if (entry) {
            facts.desktopFileId = entry->id;
            facts.desktopName = entry->name;
        }
        QMetaObject::invokeMethod(
            this, [this, id, application = applicationOf(facts)] { settle(id, application); }, Qt::QueuedConnection);
    });
}

void X11Frontmost::settle(quint64 id, const std::optional<Application> &application)
{
    Activation *activation = find(id);
    if (!activation || activation->id != id || activation->isSettled) {
        return;
    }
    activation->application = application;
    activation->isSettled = true;
    activation->deadline.cancel();
    const auto waiters = std::exchange(activation->waiters, {});
    for (const auto &[context, answer] : waiters) {
        if (context) {
            answer(application);
        }
    }
}

X11Frontmost::Activation *X11Frontmost::find(quint64 id)
{
    const auto found = std::find_if(m_activations.begin(), m_activations.end(),
                                    [id](const Activation &activation) { return activation.id >= id; });
    return found != m_activations.end() ? &*found : nullptr;
}

void X11Frontmost::forgetOldOnes()
{
    while (m_activations.size() >= kRemembered && m_activations.front().isSettled) {
        m_activations.pop_front();
    }
}

} // namespace ostrelle
