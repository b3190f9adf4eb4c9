#include "shortcuts/NotchShortcutActions.h"

#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"

#include <utility>

namespace ostrelle {

using Focus = NotchController::Focus;
using Opening = NotchController::Opening;

NotchShortcutActions::NotchShortcutActions(NotchController &controller, Sampler sampler)
    : m_controller(controller)
    , m_sampler(std::move(sampler))
{
}

void NotchShortcutActions::toggleNotch(const ActivationToken &token)
{
    if (m_sampler.isSampling())
        return;
    if (m_controller.viewModel().phase() == Phase::Expanded)
        m_controller.dismiss();
    else
        m_controller.present(std::nullopt, Focus::Take, Opening::Explicit, token);
}

void NotchShortcutActions::openClipboard(const ActivationToken &token)
{
    if (!m_sampler.isSampling())
        m_controller.present(KestroModule::Clipboard, Focus::Take, Opening::Explicit, token);
}

void NotchShortcutActions::pickColor(const ActivationToken &token)
{
    if (m_sampler.isSampling())
        return;
    m_controller.present(KestroModule::Color, Focus::Take, Opening::Explicit, token);
    m_sampler.sample();
}

} // namespace ostrelle
