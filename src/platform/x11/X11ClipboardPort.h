#pragma once

#include "platform/ClipboardPort.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11AtomNames.h"

#include <QList>

#include <memory>
#include <optional>

namespace ostrelle {

class PortalFileTransfer;
class TaskScheduler;
class X11Frontmost;

/// The CLIPBOARD selection. Changes come from XFixes selection events; other owners are read by X11SelectionTransfer;
/// writing, and serving what was written, is the toolkit's.
class X11ClipboardPort final : public ClipboardPort
{
    Q_OBJECT
public:
    X11ClipboardPort(WatchConnection &connection, X11Frontmost &frontmost, TaskScheduler &scheduler,
                     QString keeperPath);
    ~X11ClipboardPort() override;

    qint64 changeCount() const override { return m_changeCount; }
    void snapshot(QObject *context, std::function<void(std::optional<ClipboardSnapshot>)> answer) override;
    void read(qint64 changeCount, ClipboardFormat format, QObject *context,
              std::function<void(ClipboardContent)> answer) override;
    qint64 write(const ClipboardOffer &offer) override;
    void handOver() override;

private:
    void handleEvent(const xcb_generic_event_t &event);
    void handleOwner(xcb_window_t owner, xcb_timestamp_t time);
    void announceChange();
    void adoptCurrentOwner();
    void askForTypes(std::function<void(std::optional<ClipboardSnapshot>)> then);
    void readKnown(ClipboardFormat format, std::function<void(ClipboardContent)> then);
    /// What is being read is not there any more.
    void endReads();

    WatchConnection &m_connection;
    X11Frontmost &m_frontmost;
    TaskScheduler &m_scheduler;
    QString m_keeperPath;
    xcb_atom_t m_clipboard;
    int m_selectionEvent = 0;
    WatchConnection::Subscription m_events;
    std::unique_ptr<X11AtomNames> m_names;
    std::unique_ptr<PortalFileTransfer> m_fileTransfer;

    qint64 m_changeCount = 0;
    int m_unconfirmedWrites = 0;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    quint64 m_activation = 0;                          ///< who was active when the present content was announced
    std::optional<QList<X11AtomNames::Named>> m_types; ///< of the present content, once a snapshot has learnt them
};

} // namespace ostrelle
