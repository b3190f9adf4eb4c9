#include "windows/onboarding/ToolTour.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "notch/NotchAppearance.h"
#include "windows/controls/SwitchButton.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/StepHeader.h"
#include "windows/onboarding/ToolCard.h"
#include "windows/onboarding/ToolPicker.h"

#include <QSet>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kCardTop = 136;
constexpr int kPickerGap = 28;
constexpr std::chrono::milliseconds kStay{3400};

} // namespace

ToolTour::ToolTour(const ControlContext &context, SettingsStore &settings, TaskScheduler &scheduler, Progress &progress,
                   QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_progress(progress)
    , m_header(makeChild<StepHeader>(
          this, context, QStringLiteral("Six tools"),
          QStringList{QStringLiteral("Everything the notch holds. Turn off anything you won't use —"),
                      QStringLiteral("you can change it later in Settings.")}))
    , m_card(makeChild<ToolCard>(this, context, tool()))
    , m_picker(makeChild<ToolPicker>(this, context))
{
    m_card.move(onboarding::kMargin, kCardTop);
    m_picker.move((onboarding::kPage.width() - m_picker.width()) / 2, kCardTop + m_card.height() + kPickerGap);
    m_picker.showTool(tool());
    connect(&m_card.control(), &SwitchButton::switched, this, &ToolTour::setShown);
    connect(&m_picker, &ToolPicker::picked, this, [this](KestroModule module) {
        m_progress.isAuto = false;
        m_auto.cancel();
        show(static_cast<int>(std::find(kAllModules.begin(), kAllModules.end(), module) - kAllModules.begin()));
    });
    m_watch = settings.bindableEnabledModules().addNotifier([this] { showState(); });
    showState();
}

KestroModule ToolTour::tool() const
{
    return kAllModules.at(static_cast<std::size_t>(m_progress.index));
}

void ToolTour::showEvent(QShowEvent *)
{
    if (m_progress.isAuto)
        m_auto = m_scheduler.every(kStay, this, [this] { advance(); });
}

void ToolTour::hideEvent(QHideEvent *)
{
    m_auto.cancel();
}

void ToolTour::advance()
{
    // A switch that someone is about to flip stays that of its tool.
    const bool isInHand = m_card.control().underMouse() || m_card.control().hasFocus();
    if (!m_context.appearance.reducesMotion() && !isInHand)
        show((m_progress.index + 1) % static_cast<int>(kAllModules.size()));
}

void ToolTour::show(int index)
{
    const bool isForward = index > m_progress.index || (index == 0 && m_progress.isAuto);
    m_progress.index = index;
    m_picker.showTool(tool());
    m_card.showTool(tool(), isForward ? ToolCard::Direction::Forward : ToolCard::Direction::Back);
    showState();
}

void ToolTour::showState()
{
    m_card.showState(m_settings.enabledModules().contains(tool()));
}

void ToolTour::setShown(bool isShown)
{
    QSet<KestroModule> modules = m_settings.enabledModules();
    if (isShown)
        modules.insert(tool());
    else
        modules.remove(tool());
    m_settings.setEnabledModules(modules);
}

} // namespace ostrelle
