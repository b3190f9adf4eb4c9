#pragma once

#include "platform/ClipboardPort.h"
#include "platform/freedesktop/ClipboardTypes.h"
#include "platform/x11/X11SelectionTransfer.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>

namespace ostrelle {

class PortalFileTransfer;
class TaskScheduler;

/// Reads one format of the clipboard: asks for its types, best first, until one gives something. Destroying it is the
/// cancel. Main thread.
class X11ContentRead : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        WatchConnection &connection;
        TaskScheduler &scheduler;
        PortalFileTransfer &fileTransfer;
    };
    struct Target
    {
        xcb_atom_t atom = XCB_ATOM_NONE;
        clipboardTypes::Encoding encoding = clipboardTypes::Encoding::Raw;
    };
    struct Subject
    {
        xcb_atom_t clipboard = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        ClipboardFormat format = ClipboardFormat::Text;
        QList<Target> targets;
    };

    /// `answer` is called once, from the event loop; the read then deletes itself.
    X11ContentRead(const Services &services, const Subject &subject, std::function<void(ClipboardContent)> answer,
                   QObject *parent);

    /// The content is gone: answers so.
    void end();

private:
    void askForNext();
    void handle(X11SelectionTransfer::Result result, clipboardTypes::Encoding encoding);
    void takeFiles(const QStringList &paths);
    void finish(ClipboardContent content);

    Services m_services;
    Subject m_subject;
    std::function<void(ClipboardContent)> m_answer;
    std::unique_ptr<X11SelectionTransfer> m_transfer;
};

} // namespace ostrelle
