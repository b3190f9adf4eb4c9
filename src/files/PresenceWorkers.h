#pragma once

#include "files/FileFacts.h"
#include "files/FileLookUp.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QObject;

namespace ostrelle {

/// Finds out what stands at paths, on threads of which each may hang for ever: one per mount that is asked at the
/// moment, and never more than kThreadLimit. Main thread.
class PresenceWorkers
{
public:
    static constexpr int kThreadLimit = 16;

    struct Found
    {
        QString path;
        FileFacts facts;
    };

    /// `found` is called on the main thread, with `receiver` alive, once per path that was posted, if ever.
    PresenceWorkers(std::unique_ptr<FileLookUp> lookUp, QObject *receiver,
                    std::function<void(const QList<Found> &)> found);
    /// Threads that hang are left to themselves; nothing is called any more.
    ~PresenceWorkers();
    PresenceWorkers(const PresenceWorkers &) = delete;
    PresenceWorkers &operator=(const PresenceWorkers &) = delete;

    void post(const QStringList &paths);
    /// The table of mounts is read again before the next path is looked at.
    void renewMounts();

private:
    struct State;
    // Shared with the threads, because one that hangs outlives the object.
    std::shared_ptr<State> m_state;
};

} // namespace ostrelle
