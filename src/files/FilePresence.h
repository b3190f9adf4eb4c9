#pragma once

#include "files/FileFacts.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace ostrelle {

class FileLookUp;
class TaskScheduler;

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
};

} // namespace ostrelle
