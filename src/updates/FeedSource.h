#pragma once

#include "foundation/RequestHandle.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QUrl;

namespace ostrelle {

/// What came of a request for the update feed.
struct FeedAnswer
{
    enum class Outcome {
        Answered,   ///< `status` and, if that is 200, `body`
        Unreadable, ///< not HTTP, or larger than any feed
        Failed,     ///< `message` says why, for the user
    };

    Outcome outcome = Outcome::Failed;
    int status = 0;
    QByteArray body;
    QString message;
};

/// Gets the update feed. Main thread.
class FeedSource
{
public:
    using Done = std::function<void(const FeedAnswer &)>;

    virtual ~FeedSource() = default;

    /// Calls `done` once, later. The handle may be dropped or replaced from inside.
    virtual RequestHandle fetch(const QUrl &address, Done done) = 0;
};

} // namespace ostrelle
