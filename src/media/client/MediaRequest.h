#pragma once

#include <QPointer>

namespace ostrelle {

class MediaClient;

/// Handle of one request to a MediaClient. After cancel(), destruction, or assignment of another request nothing of the
/// old one is called; cancelling twice is fine. May outlive the client, which then calls nothing. Main thread only.
class [[nodiscard]] MediaRequest
{
public:
    MediaRequest() = default;
    MediaRequest(MediaClient &client, quint64 number);
    MediaRequest(MediaRequest &&other) noexcept;
    MediaRequest &operator=(MediaRequest &&other) noexcept;
    ~MediaRequest();

    void cancel();
    /// Lets it come before all that were asked for earlier, as if it were asked for now.
    void raise();
    bool isPending() const;

private:
    QPointer<MediaClient> m_client;
    quint64 m_number = 0;
};

} // namespace ostrelle
