#include "inspectors/FileInspector.h"

#include "files/FilePresence.h"
#include "platform/Haptics.h"
#include "records/PathText.h"

#include <utility>

namespace ostrelle {

FileInspector::FileInspector(const Surroundings &surroundings, const QString &recentsKey, QObject *parent)
    : QObject(parent)
    , m_presence(surroundings.presence)
    , m_haptics(surroundings.haptics)
    , m_scheduler(surroundings.scheduler)
    , m_recents(surroundings.defaults, recentsKey, kRecentLimit)
{
}

void FileInspector::open(const RecentFile &file)
{
    // What is being read goes on: this one may turn out to be gone.
    const auto take = [this, offer = ++m_offer, path = file.path](const QList<FileFacts> &facts) {
        if (offer != m_offer)
            return;
        if (facts.first().isPresent()) {
            load(path);
        } else {
            m_recents.removeMissing(path);
            reject();
        }
    };
    m_presence.ask({standardizedPath(file.path)}, this, take);
}

void FileInspector::reject()
{
    m_wasRefusedSince = isReading();
    m_isRejected = true;
    m_rejectionEnd = m_scheduler.after(kRejectionShown, this, [this] { m_isRejected = false; });
}

void FileInspector::accept(const QString &path, const QString &summary)
{
    // What was offered later stays refused for its time.
    if (!m_wasRefusedSince) {
        m_rejectionEnd.cancel();
        m_isRejected = false;
    }
    m_recents.record(path, summary);
    m_haptics.tick();
}

void FileInspector::awaitFacts(RequestHandle request, const std::function<void()> &refuse)
{
    abandon();
    m_wasRefusedSince = false;
    m_isReading = true;
    m_request = std::move(request);
    m_patience = m_scheduler.after(kPatience, this, refuse);
}

void FileInspector::settle()
{
    m_isReading = false;
    m_request.cancel();
    m_patience.cancel();
}

void FileInspector::abandon()
{
    ++m_offer;
    settle();
}

} // namespace ostrelle
