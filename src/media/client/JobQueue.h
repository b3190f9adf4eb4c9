#pragma once

#include "foundation/Task.h"
#include "media_client/FileAdmission.h"
#include "media_client/HelperGuess.h"
#include "media_client/HelperPool.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>

namespace ostrelle {

/// One request to a MediaClient on its way to its answer.
struct MediaJob
{
    enum class Stage { Waiting, Admitting, Ready, Running };
    using Deliver = std::function<void(HelperReply &reply)>;

    quint64 number = 0;
    quint64 turn = 0; ///< the greatest comes first
    Stage stage = Stage::Waiting;
    QString path;
    QByteArray bytes;
    bool usesCache = false;
    bool followsLinks = false;
    HelperRequest request;
    HelperKind helper = HelperKind::Light; ///< to be asked next, or being asked
    bool hasLightAnswered = false;
    std::optional<MediaFailure> guessFailure; ///< what the other helper said when it was asked first
    AdmittedFile admitted;
    Task deadline;
    Deliver deliver;
};

/// The requests without an answer: which comes next, and which helper it goes to. Main thread.
class JobQueue
{
public:
    /// Comes before all others.
    MediaJob &add(MediaJob job);
    /// Null when it has its answer, or was dropped.
    MediaJob *find(quint64 number);
    /// One that is there.
    MediaJob take(quint64 number);
    /// Lets it come before all others.
    void raise(quint64 number);
    std::size_t size() const { return m_jobs.size(); }

    /// The first of those at this stage whose helper is of one of these kinds; null when there is none.
    MediaJob *foremost(MediaJob::Stage stage, std::span<const HelperKind> kinds);
    /// How many are on their way to a helper of this kind.
    int aheadOf(HelperKind kind) const;
    /// Will a helper of this kind be needed so soon that ending an idle one would only mean to start it again?
    bool isNear(HelperKind kind) const;

    /// After a reply to the job: is there somebody left to ask? Sets the helper then. Of the picture that there is, it
    /// learns for the jobs to come.
    bool isAskedAgain(MediaJob &job, const HelperReply &reply);

private:
    HelperKind firstHelperFor(const MediaJob &job) const;
    void learnFrom(const MediaJob &job);

    std::map<quint64, MediaJob> m_jobs;
    quint64 m_lastNumber = 0;
    quint64 m_lastTurn = 0;
    HelperGuess m_guess;
};

} // namespace ostrelle
