#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QObject;

namespace ostrelle {

/// One file that always holds the newest whole state of something: written in the background, atomically, the latest
/// snapshot wins. A write that fails is logged once per cause and tried again with the next one and by flush(). A file
/// that could not be decoded stays untouched until the next write and is then kept aside. Main thread.
class SnapshotFile
{
public:
    /// Runs on the writer's thread: may hold a snapshot, and nothing else of the main thread's.
    using Encode = std::function<QByteArray()>;

    /// `what` names the content in log lines: "The settings".
    SnapshotFile(const QString &path, const QString &what);
    ~SnapshotFile();

    /// Hands the file's bytes to `decode`, which says whether they make sense; not called when there is no file. False
    /// when the file cannot be read or makes no sense. Before the first save(); waits for the disk.
    bool load(const std::function<bool(const QByteArray &bytes)> &decode);
    void save(Encode encode);
    /// Tells when saving begins to fail and when it works again. One observer.
    void observeSaving(std::function<void(bool isFailing)> observer);
    /// Tries again what could not be written.
    void retry();
    /// Answers when everything so far is on the disk, or failed once more: false then. Not when `context` is gone.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);
    /// Waits until everything is on the disk, trying once more what failed; false when that fails too.
    bool flush();

private:
    struct Writer;
    std::unique_ptr<Writer> m_writer;
};

} // namespace ostrelle
