#include "media_client/JobQueue.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace ostrelle {
namespace {

/// So many files on, one that needs a helper is worth keeping it for.
constexpr std::ptrdiff_t kNearJobs = 8;

} // namespace

MediaJob &JobQueue::add(MediaJob job)
{
    job.number = ++m_lastNumber;
    job.turn = ++m_lastTurn;
    job.helper = firstHelperFor(job);
    return m_jobs.emplace(m_lastNumber, std::move(job)).first->second;
}

MediaJob *JobQueue::find(quint64 number)
{
    const auto job = m_jobs.find(number);
    return job == m_jobs.end() ? nullptr : &job->second;
}

MediaJob JobQueue::take(quint64 number)
{
    return std::move(m_jobs.extract(number).mapped());
}

void JobQueue::raise(quint64 number)
{
    if (MediaJob *job = find(number))
        job->turn = ++m_lastTurn;
}

MediaJob *JobQueue::foremost(MediaJob::Stage stage, std::span<const HelperKind> kinds)
{
    MediaJob *first = nullptr;
    for (auto &[number, job] : m_jobs) {
        const bool isAsked = job.stage == stage && std::find(kinds.begin(), kinds.end(), job.helper) != kinds.end();
        if (isAsked && (!first || job.turn > first->turn))
            first = &job;
    }
    return first;
}

int JobQueue::aheadOf(HelperKind kind) const
{
    return static_cast<int>(std::count_if(m_jobs.begin(), m_jobs.end(), [kind](const auto &entry) {
        const MediaJob &job = entry.second;
        return job.helper == kind && (job.stage == MediaJob::Stage::Admitting || job.stage == MediaJob::Stage::Ready);
    }));
}

bool JobQueue::isNear(HelperKind kind) const
{
    std::vector<const MediaJob *> waiting;
    for (const auto &[number, job] : m_jobs) {
        if (job.stage != MediaJob::Stage::Running)
            waiting.push_back(&job);
    }
    const auto end = waiting.begin() + std::min(std::ssize(waiting), kNearJobs);
    std::partial_sort(waiting.begin(), end, waiting.end(),
                      [](const MediaJob *one, const MediaJob *other) { return one->turn > other->turn; });
    return std::any_of(waiting.begin(), end, [kind](const MediaJob *job) { return job->helper == kind; });
}

bool JobQueue::isAskedAgain(MediaJob &job, const HelperReply &reply)
{
    const bool isDone = !reply.failure && !reply.isDeclined;
    if (job.admitted.cached) {
        // What the cache has may be spoilt, and the file need not be.
        job.admitted.cached.reset();
        job.helper = firstHelperFor(job);
        return !isDone;
    }
    if (isDone) {
        learnFrom(job);
        return false;
    }
    if (reply.failure == MediaFailure::HelperLost || reply.failure == MediaFailure::HelperMissing ||
        reply.failure == MediaFailure::TimedOut)
        return false;
    if (job.helper != HelperKind::Extra) {
        job.hasLightAnswered = true;
        job.helper = HelperKind::Extra;
        return reply.isDeclined && !job.guessFailure;
    }
    if (job.hasLightAnswered)
        return false;
    job.guessFailure = reply.failure.value_or(MediaFailure::Unsupported);
    job.helper = HelperKind::Light;
    return true;
}

HelperKind JobQueue::firstHelperFor(const MediaJob &job) const
{
    return job.request.command == HelperCommand::Thumbnail
               ? m_guess.helperFor(job.request.extension)
               : ostrelle::firstHelperFor(job.request.command, job.request.extension);
}

void JobQueue::learnFrom(const MediaJob &job)
{
    if (job.request.command != HelperCommand::Thumbnail)
        return;
    m_guess.learn(job.request.extension, job.helper);
    for (auto &[number, other] : m_jobs) {
        if (other.stage == MediaJob::Stage::Waiting)
            other.helper = firstHelperFor(other);
    }
}

} // namespace ostrelle
