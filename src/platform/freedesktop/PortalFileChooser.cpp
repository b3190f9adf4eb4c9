#include "platform/freedesktop/PortalFileChooser.h"

#include "platform/freedesktop/PortalFileRequest.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/freedesktop/ToolkitFileDialog.h"

#include <utility>

namespace ostrelle {

namespace {

using namespace std::chrono_literals;

/// A portal that the bus has to start takes about one second to show something.
constexpr auto kStillComing = 1500ms;

} // namespace

PortalFileChooser::PortalFileChooser(const TaskScheduler &scheduler, ClipboardPort &clipboard, QObject *parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_clipboard(clipboard)
{
}

PortalFileChooser::~PortalFileChooser() = default;

void PortalFileChooser::choose(const FileChoice &choice, QObject *context, std::function<void(QStringList)> answer)
{
    m_request.reset();
    m_dialog.reset();
    m_waiting.push_back({context, std::move(answer)});
    m_choice = choice;
    askPortal();
}

void PortalFileChooser::raise()
{
    if (m_dialog) {
        m_dialog->raise();
    } else if (m_request && m_scheduler.now() - m_asked > kStillComing) {
        // A portal cannot raise its chooser, and one that lies behind other windows looks like a dead button.
        m_request.reset();
        askPortal();
    }
}

void PortalFileChooser::askPortal()
{
    m_asked = m_scheduler.now();
    const auto isOutdated = [this, turn = ++m_turn] { return m_turn != turn; };
    auto use = [this, isOutdated](const QDBusConnection &bus) {
        if (isOutdated()) {
            return;
        }
        auto answered = [this](PortalFileRequest::Outcome outcome, const QStringList &paths) {
            m_request.release()->deleteLater();
            if (outcome == PortalFileRequest::Outcome::Unavailable) {
                askToolkit();
            } else {
                finish(paths);
            }
        };
        m_request = std::make_unique<PortalFileRequest>(bus, m_choice, m_scheduler, std::move(answered));
    };
    sessionBus::whenConnected(this, std::move(use), [this, isOutdated] {
        if (!isOutdated()) {
            askToolkit();
        }
    });
}

void PortalFileChooser::askToolkit()
{
    m_dialog = std::make_unique<ToolkitFileDialog>(m_choice, m_clipboard, [this](const QStringList &paths) {
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
