#pragma once

#include "files/RecentFiles.h"
#include "foundation/RequestHandle.h"
#include "foundation/Task.h"

#include <QBindable>
#include <QObject>
#include <QProperty>
#include <QString>

#include <chrono>
#include <functional>

namespace ostrelle {

class DefaultsDatabase;
class FilePresence;
class Haptics;
class TaskScheduler;

/// What the tools that show the facts of one file have in common: the newest file offered wins, a file that cannot be
/// read is refused for a moment, one that can is kept among the recent ones. Main thread; nothing here waits.
class FileInspector : public QObject
{
    Q_OBJECT
public:
    struct Surroundings
    {
        DefaultsDatabase &defaults;
        FilePresence &presence;
        Haptics &haptics;
        TaskScheduler &scheduler;
    };

    /// A file about which nothing is known after so long is refused.
    static constexpr std::chrono::seconds kPatience{2};
    /// How long a refusal is shown.
    static constexpr std::chrono::seconds kRejectionShown{2};
    static constexpr int kRecentLimit = 20;

    /// `recentsKey` is where the recent files are kept in the defaults database.
    FileInspector(const Surroundings &surroundings, const QString &recentsKey, QObject *parent);

    /// Shows the file, as soon as it has been read, or refuses it. An absolute path.
    virtual void load(const QString &path) = 0;
    /// Shows nothing.
    virtual void clear() = 0;
    /// Loads one of the recent files; one that is gone leaves the list and is refused.
    void open(const RecentFile &file);

    RecentFiles &recents() { return m_recents; }
    bool isReading() const { return m_isReading.value(); }
    /// A file was refused a moment ago.
    bool isRejected() const { return m_isRejected.value(); }
    QBindable<bool> bindableRejected() { return &m_isRejected; }

protected:
    void reject();
    /// The file was read.
    void accept(const QString &path, const QString &summary);
    /// Keeps a request until it calls settle(); calls `refuse` when that takes too long. Takes the place of whatever
    /// was offered before.
    void awaitFacts(RequestHandle request, const std::function<void()> &refuse);
    /// The file that is being read is awaited no more.
    void settle();
    /// Nothing that was offered is awaited any more.
    void abandon();

private:
    FilePresence &m_presence;
    Haptics &m_haptics;
    TaskScheduler &m_scheduler;
    RecentFiles m_recents;
    int m_offer = 0;                ///< counts what takes the place of an open() that waits
    bool m_wasRefusedSince = false; ///< another file, after the one that is being read was offered
    RequestHandle m_request;
    Task m_patience;
    Task m_rejectionEnd;
    QProperty<bool> m_isReading{false};
    QProperty<bool> m_isRejected{false};
};

} // namespace ostrelle
