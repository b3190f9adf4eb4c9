#pragma once

#include "files/FilePresence.h"

#include <QObject>
#include <QStringList>

#include <deque>

namespace ostrelle {

/// Questions to FilePresence whose answers come in the order of the questions, whatever mounts they wait for. Main
/// thread.
class PresenceQueue : public QObject
{
    Q_OBJECT
public:
    /// `presence` outlives this.
    explicit PresenceQueue(FilePresence &presence, QObject *parent = nullptr);

    /// As FilePresence::ask(), after the answers to the questions before it. None when this is gone by then.
    void ask(const QStringList &paths, const FilePresence::Answer &answer);
    /// What was asked is not answered any more.
    void forget();

private:
    struct Question
    {
        QStringList paths;
        FilePresence::Answer answer;
    };

    void askFirst();

    FilePresence &m_presence;
    std::deque<Question> m_questions; ///< the first one is being asked, or its answer is being told
    int m_forgotten = 0;
};

} // namespace ostrelle
