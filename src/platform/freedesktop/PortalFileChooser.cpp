#include "platform/freedesktop/PortalFileChooser.h"

#include "platform/freedesktop/PortalFileRequest.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/freedesktop/ToolkitFileDialog.h"

#include <utility>

namespace ostrelle {

PortalFileChooser::PortalFileChooser(const TaskScheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
{
}

PortalFileChooser::~PortalFileChooser() = default;

void PortalFileChooser::choose(const FileChoice &choice, QObject *context, std::function<void(QStringList)> answer)
{
    // A portal cannot raise an open chooser, and one that lies behind other windows looks like a dead button.
    m_request.reset();
    m_dialog.reset();
    m_waiting.push_back({context, std::move(answer)});
    askPortal(choice);
}

void PortalFileChooser::askPortal(const FileChoice &choice)
{
    const auto isOutdated = [this, turn = ++m_turn] { return m_turn != turn; };
    auto use = [this, choice, isOutdated](const QDBusConnection &bus) {
        if (isOutdated()) {
            return;
        }
        auto answered = [this, choice](PortalFileRequest::Outcome outcome, const QStringList &paths) {
            m_request.release()->deleteLater();
            if (outcome == PortalFileRequest::Outcome::Unavailable) {
                askToolkit(choice);
            } else {
                finish(paths);
            }
        };
        m_request = std::make_unique<PortalFileRequest>(bus, choice, m_scheduler, std::move(answered));
    };
    sessionBus::whenConnected(this, std::move(use), [this, choice, isOutdated] {
        if (!isOutdated()) {
            askToolkit(choice);
        }
    });
}

void PortalFileChooser::askToolkit(const FileChoice &choice)
{
    m_dialog = std::make_unique<ToolkitFileDialog>(choice, [this](const QStringList &paths) {
        m_dialog.reset();
        finish(paths);
    });
}

void PortalFileChooser::finish(const QStringList &paths)
{
    const auto waiting = std::exchange(m_waiting, {});
    for (const Waiting &one : waiting) {
        if (one.context) {
            one.answer(&one == &waiting.back() ? paths : QStringList());
        }
    }
}

} // namespace ostrelle
