#pragma once

#include "foundation/FileDescriptor.h"
#include "media_client/DesktopThumbnails.h"
#include "media_client/MediaPicture.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace ostrelle {

/// A file that a helper may be given, and what the desktop's cache knows of it.
struct AdmittedFile
{
    std::optional<MediaFailure> failure; ///< then nothing else is set
    FileDescriptor file;
    FileDescriptor cached; ///< its thumbnail in the cache, when that is of this state of the file
    ThumbnailSubject
        subject; ///< of the file itself, where a link led to it; without a URI where the cache has no place for it
};

/// Opens files for the helpers on threads of its own, because a dead network mount answers never: regular files only,
/// read-only, and nothing else is opened at all. A thread that hangs is left behind. Main thread.
class FileAdmission : public QObject
{
    Q_OBJECT
public:
    using Taker = std::function<void(quint64 number, AdmittedFile file)>;

    struct Wish
    {
        quint64 number = 0;
        QString path;
        QByteArray bytes;          ///< used where there is no path
        int cacheSide = 0;         ///< looked for in the cache, in this size or larger; 0: not
        bool followsLinks = false; ///< a symbolic link stands for what it leads to; else it is no file
    };

    /// `taker` gets each answer, from the event loop.
    FileAdmission(const DesktopThumbnails &cache, Taker taker);
    ~FileAdmission() override;

    void admit(const Wish &wish);

private:
    struct State;

    void deliver();

    // Shared with the threads, any of which may hang in the kernel when everything else is gone.
    std::shared_ptr<State> m_state;
    std::unique_ptr<QSocketNotifier> m_notifier;
    Taker m_taker;
};

} // namespace ostrelle
