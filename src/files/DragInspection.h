#pragma once

#include "files/FileFacts.h"
#include "foundation/Task.h"

#include <QObject>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <functional>

namespace ostrelle {

class TaskScheduler;

/// What a drag holds, as far as it decides which tools can take it. With a folder in it nothing else does.
struct DragContents
{
    bool hasFolder = false;
    bool hasImage = false;
    bool hasAudio = false;

    friend bool operator==(const DragContents &, const DragContents &) = default;
};

/// Asks what stands at these standardised paths: one answer per path, in order, on the main thread, at once or later,
/// none when `context` is gone by then. What hangs is answered with Unknown in the end.
using FactsQuestion = std::function<void(const QStringList &paths, const QObject *context,
                                         const std::function<void(const QList<FileFacts> &)> &answer)>;

/// Finds out what a drag holds: folders by asking the file system, images and audio by their names. It goes through the
/// list in small portions, so that a long one holds up nothing, and only to the first folder. Main thread.
class DragInspection : public QObject
{
    Q_OBJECT
public:
    /// What is not known after so long counts as the plain files that the names speak of, until it is.
    static constexpr std::chrono::milliseconds kPatience{100};

    DragInspection(const FactsQuestion &question, TaskScheduler &scheduler, const QStringList &paths);

    /// Emits found(), perhaps before it returns.
    void start();

Q_SIGNALS:
    /// Once when everything is known, before that once when kPatience is over. What else has been learned about the
    /// files by then is known at the second time, too, also when the contents are the same.
    void found(const DragContents &contents);

private:
    void askOn();
    void judgeNames(const QStringList &paths);

    FactsQuestion m_question;
    TaskScheduler &m_scheduler;
    QStringList m_paths;
    qsizetype m_next = 0;
    bool m_isAsking = false;
    bool m_isWaiting = false;
    QSet<QString> m_suffixes; ///< judged already
    DragContents m_contents;
    Task m_patience;
};

} // namespace ostrelle
