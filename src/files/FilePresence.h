#pragma once

#include "files/FileFacts.h"
#include "files/PresenceWorkers.h"
#include "foundation/Task.h"
#include "foundation/TaskScheduler.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace ostrelle {

class FileLookUp;

/// Whether files exist and what they are, asked off the main thread. Paths are absolute and standardised.
///
/// The answer to a path comes within kDeadline, else it is Unknown, which counts as present. Every mount point has a
/// queue and a thread of its own while it has questions, so that a dead network mount stops nothing else, also when it
/// is reached through links; a thread that hangs in one is left alone until it returns. Main thread; nothing here
/// waits.
class FilePresence : public QObject
{
    Q_OBJECT
public:
    static constexpr std::chrono::seconds kDeadline{1};
    /// Answers are taken as true for so long.
    static constexpr std::chrono::seconds kFreshness{2};

    using Answer = std::function<void(const QList<FileFacts> &facts)>;

    explicit FilePresence(TaskScheduler &scheduler, QObject *parent = nullptr);
    /// Tests bring file systems of their own.
    FilePresence(TaskScheduler &scheduler, std::unique_ptr<FileLookUp> lookUp, QObject *parent = nullptr);
    ~FilePresence() override;

    /// What is known of `path`, for painting: at once, Unknown before the first answer. When that is older than
    /// kFreshness it is asked again in the background, and changed() tells when it turns out otherwise.
    FileFacts facts(const QString &path);

    /// Answers with one entry per path, in order: before it returns when all of them are known freshly, else when the
    /// last one is known or its deadline has passed. No answer when `context` is gone by then.
    void ask(const QStringList &paths, const QObject *context, const Answer &answer);

Q_SIGNALS:
    /// facts() answers otherwise for these paths.
    void changed(const QStringList &paths);

private:
    struct Known
    {
        FileFacts facts;
        bool isAnswered = false;
        MonotonicTime answered{};
        bool isAsked = false; ///< a worker has it
        MonotonicTime asked{};
        QList<int> questions; ///< that wait for it
    };
    struct Question
    {
        QStringList paths;
        QPointer<const QObject> context;
        Answer answer;
        int openCount = 0;
        Task deadline;
    };

    bool isSettled(const Known &known) const;
    FileFacts settledFacts(const QString &path) const;
    QList<FileFacts> settledFacts(const QStringList &paths) const;
    void post(const QStringList &paths);
    void take(const QList<PresenceWorkers::Found> &found);
    void finish(int number);

    TaskScheduler &m_scheduler;
    QHash<QString, Known> m_known;
    std::map<int, Question> m_questions;
    int m_nextQuestion = 0;
    std::optional<MonotonicTime> m_mountsRenewed;
    PresenceWorkers m_workers; ///< last: it may call until it is gone
};

} // namespace ostrelle
