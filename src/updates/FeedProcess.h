#pragma once

#include "updates/FeedSource.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace ostrelle {

class TaskScheduler;

/// Gets the feed through `ostrelle-update-feed`, a process for each request, so that the program itself has no part of
/// a network. Dropping the handle ends the process.
class FeedProcess final : public QObject, public FeedSource
{
    Q_OBJECT
public:
    struct Program
    {
        QString executable;
        QByteArray userAgent; ///< all that the server learns beside the address
    };
    /// The one beside this program, which names itself and its version.
    static Program installed(const QString &version);

    FeedProcess(TaskScheduler &scheduler, Program program, QObject *parent = nullptr);
    ~FeedProcess() override;

    /// Fails after eight seconds without a whole answer.
    RequestHandle fetch(const QUrl &address, Done done) override;

private:
    TaskScheduler &m_scheduler;
    Program m_program;
};

} // namespace ostrelle
