#include "windows/GeneralSection.h"

#include "core/LaunchAtLogin.h"
#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "shortcuts/ShortcutService.h"
#include "windows/controls/PopupPicker.h"
#include "windows/controls/SegmentedPicker.h"
#include "windows/controls/SwitchButton.h"

#include <QEvent>

#include <algorithm>
#include <array>
#include <iterator>

namespace ostrelle {
namespace {

constexpr int kPickerWidth = 150;
constexpr int kSegmentsWidth = 240;
constexpr std::array kHoverDelays = {0.0, 0.3, 0.5, 1.0, 1.5, 2.0}; ///< seconds

QString delayText(double seconds)
{
    return seconds == 0 ? QStringLiteral("Off (click to open)") : QStringLiteral("%1 s").arg(seconds);
}

QString intensityText(AnimationIntensity intensity)
{
    switch (intensity) {
    case AnimationIntensity::Subtle:
        return QStringLiteral("Subtle");
    case AnimationIntensity::Standard:
        return QStringLiteral("Standard");
    case AnimationIntensity::Expressive:
        break;
    }
    return QStringLiteral("Expressive");
}

template <typename Values, typename Value>
int indexIn(const Values &values, const Value &value)
{
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

} // namespace

GeneralSection::GeneralSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
    , m_settings(around.settings)
    , m_launch(around.launchAtLogin)
    , m_shortcuts(around.shortcuts)
    , m_behavior(addGroup(QStringLiteral("Behavior")))
{
    addLaunchRow();
    addSwitch(m_behavior,
              {.title = QStringLiteral("Show automatically"),
               .subtitle = QStringLiteral("Rest at the top of the screen instead of only on a shortcut.")},
              m_settings.bindableShowAutomatically(), [this](bool on) { m_settings.setShowAutomatically(on); });
    addHoverRow(around.popups);
    addSwitch(m_behavior,
              {.title = QStringLiteral("Catch dragged files"),
               .subtitle = QStringLiteral("Offer landing zones when you drag a file toward the top of the screen.")},
              m_settings.bindableCatchDraggedFiles(), [this](bool on) { m_settings.setCatchDraggedFiles(on); });
    addSwitch(m_behavior,
              {.title = QStringLiteral("Haptic feedback"), .subtitle = QStringLiteral("On trackpads that support it.")},
              m_settings.bindableHapticFeedback(), [this](bool on) { m_settings.setHapticFeedback(on); });
    addMotion();
    follow<bool>(m_settings.bindableShowAutomatically(), [this] { showFooter(); });
    follow<KeyCombos>(m_shortcuts.bindableCombos(), [this] { showFooter(); });
}

void GeneralSection::addLaunchRow()
{
    m_launchSwitch = &makeChild<SwitchButton>(&m_behavior.container(), context(), SwitchButton::Size::Ordinary);
    addControl(m_behavior, {.title = QStringLiteral("Launch at login")}, *m_launchSwitch);
    m_launchSwitch->showState(m_launch.isEnabled());
    connect(m_launchSwitch, &SwitchButton::switched, this, [this](bool on) { m_launch.setEnabled(on); });
    connect(&m_launch, &LaunchAtLogin::changed, this, &GeneralSection::showLaunch);
}

void GeneralSection::addHoverRow(Popups &popups)
{
    QStringList choices;
    std::transform(kHoverDelays.begin(), kHoverDelays.end(), std::back_inserter(choices), delayText);
    auto &picker = makeChild<PopupPicker>(&m_behavior.container(), context(), popups, choices, kPickerWidth);
    addControl(m_behavior,
               {.title = QStringLiteral("Open on hover"),
                .subtitle = QStringLiteral("How long the pointer rests on the notch before it opens.")},
               picker);
    follow<double>(m_settings.bindableHoverOpenDelay(), [this, &picker] {
        const double delay = m_settings.hoverOpenDelay();
        picker.showCurrent(indexIn(kHoverDelays, delay), delayText(delay));
    });
    connect(&picker, &PopupPicker::chosen, this,
            [this](int index) { m_settings.setHoverOpenDelay(kHoverDelays.at(static_cast<std::size_t>(index))); });
}

void GeneralSection::addMotion()
{
    SettingsGroup &group = addGroup(QStringLiteral("Motion"));
    QStringList choices;
    std::transform(kAllAnimationIntensities.begin(), kAllAnimationIntensities.end(), std::back_inserter(choices),
                   intensityText);
    auto &picker = makeChild<SegmentedPicker>(&group.container(), context(), choices, kSegmentsWidth);
    addControl(group, {.title = QStringLiteral("Animation intensity")}, picker);
    follow<AnimationIntensity>(m_settings.bindableAnimationIntensity(), [this, &picker] {
        picker.showCurrent(indexIn(kAllAnimationIntensities, m_settings.animationIntensity()));
    });
    connect(&picker, &SegmentedPicker::chosen, this, [this](int index) {
        m_settings.setAnimationIntensity(kAllAnimationIntensities.at(static_cast<std::size_t>(index)));
    });
}

bool GeneralSection::event(QEvent *event)
{
    // The desktop's own settings, where this may have been changed, have closed.
    if (event->type() == QEvent::WindowActivate)
        showLaunch();
    return SettingsPage::event(event);
}

void GeneralSection::showLaunch()
{
    m_launchSwitch->showState(m_launch.isEnabled());
    showFooter();
}

void GeneralSection::showFooter()
{
    const bool isReachable =
        m_settings.showAutomatically() || m_shortcuts.combos().contains(ShortcutAction::ToggleNotch);
    if (!isReachable)
        m_behavior.setFooter(
            QStringLiteral("With this off, set an Open Notch shortcut so you can still reach your tools."),
            SettingsGroup::FooterKind::Warning);
    else if (m_launch.requiresApproval())
        m_behavior.setFooter(QStringLiteral("Login item is turned off in System Settings ▸ General ▸ Login Items."),
                             SettingsGroup::FooterKind::Warning);
    else
        m_behavior.setFooter({});
}

} // namespace ostrelle
