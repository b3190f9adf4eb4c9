#include "media_client/HelperProcess.h"

#include "foundation/MakeChild.h"
#include "media_client/HelperConnection.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ostrelle {
namespace {

/// What is read at once: large enough to be quick, small enough that no frame waits for it.
constexpr qsizetype kReadAtOnce = 256 * 1024;

/// What the helper says fits what was asked and itself.
bool isSound(const HelperRequest &request, const HelperAnswer &answer)
{
    if (answer.magic != kHelperMagic || answer.id != request.id || answer.byteSize > request.outputLimit)
        return false;
    if (answer.status != HelperStatus::Done)
        return answer.byteSize == 0 && answer.status <= HelperStatus::OutOfMemory;
    if (request.command != HelperCommand::Thumbnail)
        return answer.byteSize > 0;
    const auto fits = [](std::uint32_t side, std::uint32_t most) { return side >= 1 && side <= most; };
    if (!fits(answer.width, request.side) || !fits(answer.height, request.side))
        return false;
    const bool hasCache = answer.cacheWidth > 0 || answer.cacheHeight > 0;
    if (hasCache && (!fits(answer.cacheWidth, request.cacheSide) || !fits(answer.cacheHeight, request.cacheSide)))
        return false;
    // No side is above 1024, so this cannot wrap.
    return answer.byteSize == 4 * (answer.width * answer.height + answer.cacheWidth * answer.cacheHeight);
}

} // namespace

HelperProcess::HelperProcess(const QString &executable, HelperPriority priority, QObject *parent)
    : QObject(parent)
    , m_connection(makeChild<HelperConnection>(this, executable, priority, std::span<const char *const>()))
{
    connect(&m_connection, &HelperConnection::readable, this, &HelperProcess::receive);
}

bool HelperProcess::ask(const HelperRequest &request, int file)
{
    m_request = request;
    m_received.clear();
    m_hasHeader = false;
    m_isBusy = m_connection.send(&m_request, sizeof m_request, file);
    return m_isBusy;
}

bool HelperProcess::hasFailedToStart() const
{
    return m_connection.hasFailedToStart();
}

void HelperProcess::receive()
{
    const qsizetype wanted =
        (m_hasHeader ? qsizetype(m_answer.byteSize) : qsizetype(sizeof m_answer)) - m_received.size();
    const qsizetype before = m_received.size();
    const bool isThere = m_connection.receive(m_received, std::min(wanted, kReadAtOnce));
    if (isThere && m_received.size() == before)
        return;
    if (!isThere || !m_isBusy || (!m_hasHeader && !takeHeader())) {
        m_connection.stopReading();
        Q_EMIT lost();
        return;
    }
    if (!m_hasHeader || m_received.size() < qsizetype(m_answer.byteSize))
        return;
    m_isBusy = false;
    const QByteArray payload = std::move(m_received);
    m_received = {};
    Q_EMIT answered(m_answer, payload);
}

bool HelperProcess::takeHeader()
{
    if (m_received.size() < qsizetype(sizeof m_answer))
        return true;
    std::memcpy(&m_answer, m_received.constData(), sizeof m_answer);
    m_hasHeader = true;
    m_received.clear();
    if (!isSound(m_request, m_answer))
        return false;
    m_received.reserve(qsizetype(m_answer.byteSize));
    return true;
}

void HelperProcess::retire()
{
    disconnect();
    // It outlives this object until its process is gone.
    m_connection.setParent(parent());
    m_connection.retire();
    deleteLater();
}

} // namespace ostrelle
