#include "files/FilePresence.h"

#include "files/SystemLookUp.h"

#include <utility>

namespace ostrelle {
namespace {

// More than any list shows; beyond, what is known is found out again when it is needed.
constexpr qsizetype kKnownLimit = 32'768;

} // namespace

FilePresence::FilePresence(TaskScheduler &scheduler, QObject *parent)
    : FilePresence(scheduler, std::make_unique<SystemLookUp>(), parent)
{
}

FilePresence::FilePresence(TaskScheduler &scheduler, std::unique_ptr<FileLookUp> lookUp, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_workers(std::move(lookUp), this, [this](const auto &found) { take(found); })
{
}

FilePresence::~FilePresence() = default;

FileFacts FilePresence::facts(const QString &path)
{
    Known &known = m_known[path];
    const FileFacts facts = known.facts;
    if (!known.isAsked && (!known.isAnswered || m_scheduler.now() - known.answered >= kFreshness))
        post({path});
    return facts;
}

bool FilePresence::isSettled(const Known &known) const
{
    // Hanging since longer than anybody waits: asking once more would only wait once more.
    if (known.isAsked)
        return m_scheduler.now() - known.asked >= kDeadline;
    // What was missing a moment ago may be there now, and nobody minds asking again for it.
    return known.isAnswered && known.facts.isPresent() && m_scheduler.now() - known.answered < kFreshness;
}

FileFacts FilePresence::settledFacts(const QString &path) const
{
    const auto known = m_known.constFind(path);
    return known == m_known.constEnd() || known->isAsked ? FileFacts() : known->facts;
}

void FilePresence::ask(const QStringList &paths, const QObject *context, const Answer &answer)
{
    if (m_known.size() > kKnownLimit)
        m_known.removeIf([](QHash<QString, Known>::iterator known) { return !known->isAsked; });
    const int number = m_nextQuestion++;
    int openCount = 0;
    QStringList unasked;
    for (const QString &path : paths) {
        Known &known = m_known[path];
        if (isSettled(known))
            continue;
        ++openCount;
        known.questions.append(number);
        if (!known.isAsked && known.questions.size() == 1)
            unasked.append(path);
    }
    if (openCount == 0) {
        answer(settledFacts(paths));
        return;
    }
    Question &question = m_questions[number];
    question.paths = paths;
    question.context = context;
    question.answer = answer;
    question.openCount = openCount;
    question.deadline = m_scheduler.after(kDeadline, this, [this, number] { finish(number); });
    post(unasked);
}

QList<FileFacts> FilePresence::settledFacts(const QStringList &paths) const
{
    QList<FileFacts> facts;
    facts.reserve(paths.size());
    for (const QString &path : paths)
        facts.append(settledFacts(path));
    return facts;
}

void FilePresence::post(const QStringList &paths)
{
    const MonotonicTime now = m_scheduler.now();
    for (const QString &path : paths) {
        Known &known = m_known[path];
        known.isAsked = true;
        known.asked = now;
    }
    if (!m_mountsRenewed || now - *m_mountsRenewed >= kFreshness) {
        m_mountsRenewed = now;
        m_workers.renewMounts();
    }
    m_workers.post(paths);
}

void FilePresence::take(const QList<PresenceWorkers::Found> &found)
{
    QStringList changedPaths;
    QList<int> answered;
    for (const PresenceWorkers::Found &one : found) {
        Known &known = m_known[one.path];
        if (std::exchange(known.facts, one.facts) != one.facts)
            changedPaths.append(one.path);
        known.isAsked = false;
        known.isAnswered = true;
        known.answered = m_scheduler.now();
        answered += std::exchange(known.questions, {});
    }
    for (const int number : std::as_const(answered)) {
        const auto question = m_questions.find(number);
        if (question != m_questions.end() && --question->second.openCount == 0)
            finish(number);
    }
    if (!changedPaths.isEmpty())
        Q_EMIT changed(changedPaths);
}

void FilePresence::finish(int number)
{
    const auto found = m_questions.find(number);
    const Question question = std::move(found->second);
    m_questions.erase(found);
    if (question.context)
        question.answer(settledFacts(question.paths));
}

} // namespace ostrelle
