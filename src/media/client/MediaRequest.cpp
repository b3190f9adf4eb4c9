#include "media_client/MediaRequest.h"

#include "media_client/MediaClient.h"

#include <utility>

namespace ostrelle {

MediaRequest::MediaRequest(MediaClient &client, quint64 number)
    : m_client(&client)
    , m_number(number)
{
}

MediaRequest::MediaRequest(MediaRequest &&other) noexcept
    : m_client(std::exchange(other.m_client, nullptr))
    , m_number(std::exchange(other.m_number, 0))
{
}

MediaRequest &MediaRequest::operator=(MediaRequest &&other) noexcept
{
    if (this != &other) {
        cancel();
        m_client = std::exchange(other.m_client, nullptr);
        m_number = std::exchange(other.m_number, 0);
    }
    return *this;
}

MediaRequest::~MediaRequest()
{
    cancel();
}

void MediaRequest::cancel()
{
    if (m_client)
        m_client->drop(m_number);
    m_client = nullptr;
}

void MediaRequest::raise()
{
    if (m_client)
        m_client->raise(m_number);
}

bool MediaRequest::isPending() const
{
    return m_client && m_client->isPending(m_number);
}

} // namespace ostrelle
