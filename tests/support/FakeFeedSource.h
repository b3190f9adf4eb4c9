#pragma once

#include "updates/FeedSource.h"

#include <QUrl>

#include <utility>

namespace ostrelle {

/// An update server that answers when the test says so.
class FakeFeedSource final : public FeedSource
{
public:
    RequestHandle fetch(const QUrl &address, Done done) override
    {
        addresses << address;
        m_done = std::move(done);
        return {};
    }

    void answer(const FeedAnswer &with) { std::exchange(m_done, {})(with); }
    void answer(const QByteArray &body)
    {
        answer({.outcome = FeedOutcome::Answered, .status = 200, .body = body, .message = {}});
    }

    QList<QUrl> addresses;

private:
    Done m_done;
};

} // namespace ostrelle
