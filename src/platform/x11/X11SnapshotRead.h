#pragma once

#include "platform/ClipboardPort.h"
#include "platform/x11/X11AtomNames.h"
#include "platform/x11/X11SelectionTransfer.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

class TaskScheduler;
class X11Frontmost;

/// Asks the clipboard's owner for its types, for the content of the password hint when it offers one, and waits until
/// the application that was active is known. Destroying it is the cancel. Main thread.
class X11SnapshotRead : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        WatchConnection &connection;
        X11AtomNames &names;
        X11Frontmost &frontmost;
        TaskScheduler &scheduler;
    };
    /// What is asked, and as of when.
    struct Subject
    {
        xcb_atom_t clipboard = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        qint64 changeCount = 0;
        quint64 activation = 0;
    };
    using Types = QList<X11AtomNames::Named>;
    /// Nothing when the owner did not answer.
    using Answer = std::function<void(std::optional<ClipboardSnapshot>, const Types &)>;

    /// `answer` is called once, from the event loop; the read then deletes itself.
    X11SnapshotRead(const Services &services, const Subject &subject, Answer answer, QObject *parent);

    /// The content is gone: answers nothing.
    void end();

private:
    void handleTargets(const X11SelectionTransfer::Result &result);
    void handleNames(Types types);
    void askForHint(xcb_atom_t hint);
    void askForApplication();
    void finish(std::optional<ClipboardSnapshot> snapshot);

    Services m_services;
    Subject m_subject;
    Answer m_answer;
    Types m_types;
    bool m_isConcealed = false;
    std::unique_ptr<X11SelectionTransfer> m_transfer;
};

} // namespace ostrelle
