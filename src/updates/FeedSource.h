#pragma once

#include "foundation/RequestHandle.h"
#include "updates/FeedOutcome.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QUrl;

namespace ostrelle {

/// What came of a request for the update feed.
struct FeedAnswer
{
    FeedOutcome outcome = FeedOutcome::Failed;
    int status = 0; ///< of HTTP
    QByteArray body;
    QString message; ///< for the user
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
