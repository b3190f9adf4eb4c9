#pragma once

#include "platform/x11/WatchConnection.h"
#include "platform/x11/XdndSourceWatch.h"

#include <QAbstractNativeEventFilter>
#include <QList>
#include <QObject>
#include <QPoint>

#include <memory>
#include <span>
#include <vector>

namespace ostrelle {

class TaskScheduler;
class X11PanelWindow;
class X11RawPointer;

/// The panel as a target of drags from other programs (XDND versions 3 to 5). The toolkit is kept out of it: it would
/// wait for a source that hangs, and never notice that one has died. Drags without any of the wanted types are refused
/// and not reported. One drag at a time: entered, moved, then left or released. Main thread.
class XdndTarget : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    struct Services
    {
        WatchConnection &watch;
        TaskScheduler &scheduler;
        const X11RawPointer &pointer;
        const X11PanelWindow &window;
    };

    XdndTarget(const Services &services, QList<xcb_atom_t> wantedTypes);
    ~XdndTarget() override;

    /// What the source is told about a drop here; refused at the beginning of each drag.
    void setAccepted(bool accepted);
    /// Ends a drag that was released; the source learns whether its files were taken.
    void finish(bool taken);

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    /// `types` are the wanted ones that the source offers; `time` is what it expects in requests for them.
    void entered(const QPoint &native, const QList<quint32> &types, quint32 time);
    void moved(const QPoint &native, quint32 time);
    /// Also when the source is gone.
    void left();
    void released(quint32 time);

private:
    struct Drag
    {
        xcb_window_t source = XCB_WINDOW_NONE;
        std::uint32_t version = 0;
        QList<quint32> types;
        bool areTypesKnown = false;
        bool isReported = false;
        bool isReleased = false;
        std::vector<xcb_client_message_event_t> waiting; ///< until the types are known
        std::unique_ptr<XdndSourceWatch> watch;
    };

    void handle(const xcb_client_message_event_t &message);
    void enter(const xcb_client_message_event_t &message);
    void askForTypes();
    void setTypes(std::span<const std::uint32_t> offered);
    void move(const xcb_client_message_event_t &message);
    void release(const xcb_client_message_event_t &message);
    void leave();
    void sendStatus(xcb_window_t source) const;
    void sendFinished(xcb_window_t source, std::uint32_t version, bool taken) const;
    void send(xcb_window_t source, xcb_atom_t type, std::uint32_t flags, bool isCopy, int actionAt) const;

    Services m_services;
    const QList<xcb_atom_t> m_wantedTypes;
    const xcb_atom_t m_enter;
    const xcb_atom_t m_position;
    const xcb_atom_t m_leave;
    const xcb_atom_t m_drop;
    const xcb_atom_t m_status;
    const xcb_atom_t m_finished;
    const xcb_atom_t m_typeList;
    const xcb_atom_t m_copy;
    std::unique_ptr<Drag> m_drag;
    bool m_isAccepted = false;
};

} // namespace ostrelle
