#include "shortcuts/NotchShortcutActions.h"

#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"

#include <utility>

namespace ostrelle {

using Focus = NotchController::Focus;
using Opening = NotchController::Opening;

NotchShortcutActions::NotchShortcutActions(NotchController &controller, std::function<void()> sampleColor)
    : m_controller(controller)
    , m_sampleColor(std::move(sampleColor))
{
}

void NotchShortcutActions::toggleNotch(const ActivationToken &token)
{
    if (m_controller.viewModel().phase() == Phase::Expanded)
        m_controller.dismiss();
    else
        m_controller.present(std::nullopt, Focus::Take, Opening::Explicit, token);
}

void NotchShortcutActions::openClipboard(const ActivationToken &token)
{
    m_controller.present(KestroModule::Clipboard, Focus::Take, Opening::Explicit, token);
}

void NotchShortcutActions::pickColor(const ActivationToken &token)
{
    m_controller.present(KestroModule::Color, Focus::Take, Opening::Explicit, token);
    if (m_sampleColor)
        m_sampleColor();
}

} // namespace ostrelle
