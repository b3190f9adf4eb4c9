#include "updates/UpdateService.h"

#include "core/SettingsStore.h"
#include "foundation/TaskScheduler.h"
#include "updates/FeedSource.h"
#include "updates/UpdateFeed.h"

#include <QUrlQuery>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using namespace updateStates;

constexpr auto kAfterStart = 6s;
constexpr auto kBetweenChecks = 6h;
constexpr qint64 kNoNumber = -1;

const auto kUnknownVersion = QStringLiteral("1.0");
/// A domain that never resolves (RFC 6761); what a build has as long as nobody deploys it.
const auto kNowhere = QStringLiteral(".invalid");

bool isTrimmed(QChar character)
{
    return character == u' ' || character == u'\t';
}

QStringView trimmed(QStringView version)
{
    while (!version.isEmpty() && isTrimmed(version.front()))
        version = version.sliced(1);
    while (!version.isEmpty() && isTrimmed(version.back()))
        version.chop(1);
    return version;
}

qint64 numberOf(QStringView piece)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    bool fits = false;
    const qint64 number = piece.toLongLong(&fits);
    return fits && std::all_of(piece.begin(), piece.end(), isDigit) ? number : kNoNumber;
}

std::vector<qint64> numbersOf(QStringView version)
{
    version = trimmed(version);
    if (version.startsWith(u'v', Qt::CaseInsensitive))
        version = version.sliced(1);
    std::vector<qint64> numbers;
    for (const QStringView piece : version.split(u'.', Qt::SkipEmptyParts))
        numbers.push_back(numberOf(piece));
    return numbers;
}

/// So that no cache on the way answers.
QUrl withTime(QUrl feed)
{
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("t"), QString::number(QDateTime::currentSecsSinceEpoch()));
    feed.setQuery(query);
    return feed;
}

} // namespace

UpdateService::UpdateService(SettingsStore &settings, TaskScheduler &scheduler, FeedSource &source,
                             UpdateDeployment deployment, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_source(source)
    , m_deployment(std::move(deployment))
{
}

UpdateService::~UpdateService() = default;

QBindable<UpdateState> UpdateService::bindableState()
{
    return &std::as_const(m_state);
}

QString UpdateService::currentVersion() const
{
    return m_deployment.version.isEmpty() ? kUnknownVersion : m_deployment.version;
}

bool UpdateService::hasFeed() const
{
    return !m_deployment.feed.host().endsWith(kNowhere);
}

void UpdateService::startBackgroundChecks()
{
    connect(&m_settings, &SettingsStore::autoCheckUpdatesAssigned, this, &UpdateService::schedule,
            Qt::UniqueConnection);
    schedule();
}

void UpdateService::schedule()
{
    ++m_round;
    m_timerTask.cancel();
    if (m_settings.autoCheckUpdates() && hasFeed())
        m_timerTask = m_scheduler.after(kAfterStart, this, [this] { checkAndWait(); });
}

void UpdateService::checkAndWait()
{
    check(Check::Automatic, [this, round = m_round](const State &) {
        if (round == m_round)
            m_timerTask = m_scheduler.after(kBetweenChecks, this, [this] { checkAndWait(); });
    });
}

void UpdateService::check(Check kind, Done done)
{
    if (done)
        m_waiting.push_back(std::move(done));
    m_isManual = m_isManual || kind == Check::Manual;
    if (std::holds_alternative<Checking>(m_state.value()))
        return;
    m_state = Checking();
    const QUrl address = withTime(m_deployment.feed);
    if (hasFeed() && address.isValid())
        m_request = m_source.fetch(address, [this](const FeedAnswer &answer) { finish(answer); });
    else
        m_refusal = m_scheduler.after(0s, this, [this] {
            conclude(Failed{hasFeed() ? UpdateError::badFeed()
                                      : QStringLiteral("This build of Ostrelle has no update server.")});
        });
}

void UpdateService::finish(const FeedAnswer &answer)
{
    conclude(outcomeOf(answer));
}

UpdateState UpdateService::outcomeOf(const FeedAnswer &answer)
{
    const auto found = releaseFrom(answer, m_deployment.homePage);
    if (const auto *problem = std::get_if<QString>(&found))
        return Failed{*problem};
    m_lastCheck = QDateTime::currentDateTime();
    const auto &release = std::get<Release>(found);
    const bool isNewer = compare(release.version, currentVersion()) > 0;
    const bool isSkipped = !m_isManual && m_settings.skippedUpdateVersion() == release.version;
    if (isNewer && !isSkipped)
        return Available{release};
    return Current();
}

void UpdateService::conclude(const State &state)
{
    m_isManual = false;
    const std::vector<Done> waiting = std::exchange(m_waiting, {});
    m_state = state;
    for (const Done &done : waiting)
        done(state);
}

void UpdateService::skip()
{
    const State state = m_state.value();
    if (const auto *available = std::get_if<Available>(&state)) {
        m_settings.setSkippedUpdateVersion(available->release.version);
        m_state = Current();
    }
}

int UpdateService::compare(QStringView a, QStringView b)
{
    std::vector<qint64> left = numbersOf(a);
    std::vector<qint64> right = numbersOf(b);
    const std::size_t length = std::max(left.size(), right.size());
    left.resize(length);
    right.resize(length);
    if (left == right)
        return 0;
    return left < right ? -1 : 1;
}

} // namespace ostrelle
