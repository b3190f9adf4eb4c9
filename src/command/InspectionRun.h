#pragma once

#include "command/Inspection.h"
#include "foundation/FileDescriptor.h"
#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "media_client/MediaPicture.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <memory>

namespace ostrelle {

class NameSource;

/// Inspects files, several at a time, and tells what came of each in the order of their names.
class InspectionRun
{
public:
    enum class TempoUse { Listen, TagsOnly };
    using Taker = std::function<void(const Inspection &inspection)>;

    InspectionRun(NameSource &names, int jobs, TempoUse tempoUse, Taker taker);
    ~InspectionRun();

    /// Until the last name, or until `taker` has called stop().
    void exec();
    void stop();

private:
    struct File;

    void startMore();
    void inspect(File &file);
    void takeFacts(File &file, const std::variant<AudioInfo, MediaFailure> &result);
    void takeFacts(File &file, const std::variant<ImageInfo, MediaFailure> &result);
    void listen(File &file);
    void finish(File &file);
    void tell();

    SystemTaskScheduler m_scheduler;
    MediaClient m_client;
    NameSource &m_names;
    const int m_jobs;
    const TempoUse m_tempoUse;
    const Taker m_taker;
    std::deque<std::unique_ptr<File>> m_files; ///< in the order of the names
    bool m_isStarting = false;
};

} // namespace ostrelle
