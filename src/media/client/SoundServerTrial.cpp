#include "media_client/SoundServerTrial.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "media_client/PlayerProcess.h"

#include <chrono>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

/// As long as a file is given to start.
constexpr auto kDeadline = 3s;

} // namespace

SoundServerTrial::SoundServerTrial(TaskScheduler &scheduler, const QString &player,
                                   std::function<void(SoundServerAnswer)> answer, QObject *parent)
    : QObject(parent)
    , m_process(&makeChild<PlayerProcess>(this, player))
    , m_answer(std::move(answer))
{
    connect(m_process, &PlayerProcess::reported, this, &SoundServerTrial::takeReport);
    connect(m_process, &PlayerProcess::lost, this, [this] { end(SoundServerAnswer::NoPlayer); });
    m_deadline = scheduler.after(kDeadline, this, [this] { end(SoundServerAnswer::Silent); });
}

SoundServerTrial::~SoundServerTrial() = default;

void SoundServerTrial::takeReport(const PlaybackReport &report)
{
    if (report.event == PlaybackEvent::Connected)
        end(SoundServerAnswer::LetIn);
    else if (report.failure == PlaybackFailure::NoServer)
        end(SoundServerAnswer::Refused);
    else
        end(SoundServerAnswer::NoPlayer);
}

void SoundServerTrial::end(SoundServerAnswer answer)
{
    PlayerProcess *process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    process->retire();
    m_deadline.cancel();
    m_answer(answer);
}

} // namespace ostrelle
