#include "files/PresenceQueue.h"

namespace ostrelle {

PresenceQueue::PresenceQueue(FilePresence &presence, QObject *parent)
    : QObject(parent)
    , m_presence(presence)
{
}

void PresenceQueue::ask(const QStringList &paths, const FilePresence::Answer &answer)
{
    m_questions.push_back({paths, answer});
    if (m_questions.size() == 1)
        askFirst();
}

void PresenceQueue::forget()
{
    ++m_forgotten;
    m_questions.clear();
}

void PresenceQueue::askFirst()
{
    const auto take = [this, forgotten = m_forgotten](const QList<FileFacts> &facts) {
        if (forgotten != m_forgotten)
            return;
        const FilePresence::Answer answer = m_questions.front().answer; // all may be forgotten from inside
        answer(facts);
        if (forgotten != m_forgotten)
            return;
        m_questions.pop_front();
        if (!m_questions.empty())
            askFirst();
    };
    // By value: what is asked may be answered, and gone, before the call returns.
    m_presence.ask(QStringList(m_questions.front().paths), this, take);
}

} // namespace ostrelle
