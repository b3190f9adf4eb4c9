#include "updates/FeedProcess.h"

#include "foundation/MakeChild.h"
#include "foundation/PrintableText.h"
#include "foundation/TaskScheduler.h"
#include "media_client/HelperConnection.h"
#include "updates/feed/FeedProtocol.h"

#include <QCoreApplication>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 8s;

/// How this machine reaches the network, and whom it trusts.
constexpr std::array kNetworkVariables{"https_proxy", "HTTPS_PROXY", "all_proxy",     "ALL_PROXY",
                                       "no_proxy",    "NO_PROXY",    "SSL_CERT_FILE", "SSL_CERT_DIR"};

template <std::size_t kSize>
void copyText(const QByteArray &text, std::array<char, kSize> &to)
{
    std::copy_n(text.begin(), std::min<qsizetype>(text.size(), kSize - 1), to.begin());
}

FeedAnswer failed(const QString &reason)
{
    return {.outcome = FeedOutcome::Failed, .body = {}, .message = reason};
}

bool isSound(const FeedReply &reply)
{
    return reply.magic == kFeedMagic && reply.outcome <= FeedOutcome::Failed && reply.byteSize <= kLargestFeed;
}

class Fetch final : public RequestHandle::Entry
{
public:
    Fetch(TaskScheduler &scheduler, HelperConnection &connection, FeedSource::Done done)
        : m_connection(&connection)
        , m_done(std::move(done))
    {
        QObject::connect(&connection, &HelperConnection::readable, &connection, [this] { receive(); });
        m_deadline = scheduler.after(kPatience, &connection, [this] {
            finish(failed(QStringLiteral("The update server did not answer in time.")));
        });
    }
    ~Fetch() override { retire(); }
    Fetch(const Fetch &) = delete;
    Fetch &operator=(const Fetch &) = delete;

private:
    void receive()
    {
        constexpr qsizetype kHead = sizeof(FeedReply);
        const bool isThere = m_connection->receive(m_received, kHead + kLargestFeed - m_received.size());
        FeedReply head;
        const bool hasHead = m_received.size() >= kHead;
        if (hasHead)
            std::memcpy(&head, m_received.constData(), kHead);
        if (hasHead && isSound(head) && m_received.size() >= kHead + head.byteSize)
            finish(answer(head));
        else if (!isThere || (hasHead && !isSound(head)))
            finish(failed(QStringLiteral("The update check could not be carried out.")));
    }

    FeedAnswer answer(const FeedReply &head) const
    {
        const QByteArray payload = m_received.sliced(sizeof head, head.byteSize);
        if (head.outcome == FeedOutcome::Failed)
            return failed(printable(QString::fromUtf8(payload)));
        return {.outcome = head.outcome, .status = head.status, .body = payload, .message = {}};
    }

    /// This may not outlive what `m_done` does.
    void finish(const FeedAnswer &answer)
    {
        m_deadline.cancel();
        retire();
        const FeedSource::Done done = std::exchange(m_done, {});
        done(answer);
    }

    void retire()
    {
        if (m_connection)
            m_connection->retire();
        m_connection = nullptr;
    }

    QPointer<HelperConnection> m_connection;
    FeedSource::Done m_done;
    QByteArray m_received;
    Task m_deadline;
};

} // namespace

FeedProcess::Program FeedProcess::installed(const QString &version)
{
    return {QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle-update-feed"),
            "Ostrelle/" + version.toLatin1()};
}

FeedProcess::FeedProcess(TaskScheduler &scheduler, Program program, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_program(std::move(program))
{
}

FeedProcess::~FeedProcess() = default;

RequestHandle FeedProcess::fetch(const QUrl &address, Done done)
{
    auto &connection = makeChild<HelperConnection>(this, m_program.executable, HelperPriority::Background,
                                                   std::span<const char *const>(kNetworkVariables));
    FeedRequest request;
    copyText(address.toEncoded(), request.address);
    copyText(m_program.userAgent, request.userAgent);
    // If it does not arrive, the answer is a closed connection.
    connection.send(&request, sizeof request);
    return RequestHandle(std::make_unique<Fetch>(m_scheduler, connection, std::move(done)));
}

} // namespace ostrelle
