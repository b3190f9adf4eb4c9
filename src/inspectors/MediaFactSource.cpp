#include "inspectors/MediaFactSource.h"

#include "media_client/MediaClient.h"

#include <utility>

namespace ostrelle {
namespace {

template <typename Info>
std::optional<Info> infoIn(const std::variant<Info, MediaFailure> &result)
{
    const Info *info = std::get_if<Info>(&result);
    return info != nullptr ? std::optional(*info) : std::nullopt;
}

} // namespace

MediaFactSource::MediaFactSource(MediaClient &client)
    : m_client(client)
{
}

RequestHandle MediaFactSource::audioInfo(const QString &path, AudioAnswer answer)
{
    return RequestHandle::holding(
        m_client.audioInfo(path, [answer = std::move(answer)](const auto &result) { answer(infoIn(result)); }));
}

RequestHandle MediaFactSource::imageInfo(const QString &path, ImageAnswer answer)
{
    return RequestHandle::holding(
        m_client.imageInfo(path, [answer = std::move(answer)](const auto &result) { answer(infoIn(result)); }));
}

RequestHandle MediaFactSource::tempo(const QString &path, TempoAnswer answer)
{
    return RequestHandle::holding(m_client.tempo(path, std::move(answer)));
}

} // namespace ostrelle
