#include "files/FilePicker.h"

#include "core/ForegroundSession.h"
#include "notch/NotchController.h"

#include <chrono>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

// The chooser's window is still closing when the notch has been told.
constexpr std::chrono::nanoseconds kAutoCollapseDelay = 400ms;

} // namespace

FilePicker::FilePicker(FileChooser &chooser, ForegroundSession &foreground, NotchController &controller,
                       QObject *parent)
    : QObject(parent)
    , m_chooser(chooser)
    , m_foreground(foreground)
    , m_controller(controller)
{
}

void FilePicker::pick(const FileChoice &choice, QObject *owner, AfterCancel afterCancel,
                      std::function<void(const QStringList &)> completion)
{
    if (m_openCount > 0 && m_owner == owner) {
        m_chooser.raise();
        return;
    }
    if (m_openCount++ == 0)
        m_controller.suppressAutoCollapse();
    m_owner = owner;
    m_foreground.begin();
    const auto close = [this, afterCancel, guard = QPointer<QObject>(owner),
                        completion = std::move(completion)](const QStringList &paths) {
        --m_openCount;
        m_foreground.end();
        if (guard)
            completion(paths);
        // One whose place was taken leaves the notch to the one that took it.
        if (m_openCount > 0)
            return;
        const bool isAtOnce = paths.isEmpty() && afterCancel == AfterCancel::CollapseAtOnce;
        m_controller.releaseAutoCollapse(isAtOnce ? 0ns : kAutoCollapseDelay);
    };
    m_chooser.choose(choice, this, close);
}

} // namespace ostrelle
