#include "windows/AppearanceSection.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "windows/ThemeGrid.h"
#include "windows/controls/SegmentedPicker.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kSegmentsWidth = 240;

} // namespace

AppearanceSection::AppearanceSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
    , m_settings(around.settings)
{
    addAppearance();
    addThemes();
}

void AppearanceSection::addAppearance()
{
    SettingsGroup &group = addGroup(QStringLiteral("Appearance"));
    group.setFooter(
        QStringLiteral("Open, the notch is glass: you see what is behind it, blurred. Closed, it stays black "
                       "in either appearance — it has to pass for the bezel."));
    const QStringList choices = {QStringLiteral("System"), QStringLiteral("Light"), QStringLiteral("Dark")};
    auto &picker = makeChild<SegmentedPicker>(&group.container(), context(), choices, kSegmentsWidth);
    addControl(group, {.title = QStringLiteral("Light & dark")}, picker);
    follow<AppearancePreference>(m_settings.bindableAppearance(), [this, &picker] {
        const auto &all = kAllAppearancePreferences;
        picker.showCurrent(static_cast<int>(std::find(all.begin(), all.end(), m_settings.appearance()) - all.begin()));
    });
    connect(&picker, &SegmentedPicker::chosen, this, [this](int index) {
        m_settings.setAppearance(kAllAppearancePreferences.at(static_cast<std::size_t>(index)));
    });
}

void AppearanceSection::addThemes()
{
    SettingsGroup &group = addGroup(QStringLiteral("Notch theme"));
    group.setFooter(QStringLiteral("The gradient washed through the glass, pooled in its corners and lit along its "
                                   "bottom edge."));
    auto &grid = makeChild<ThemeGrid>(&group.container(), context(), ThemeGrid::Measures{});
    group.addRow(grid);
    follow<NotchTheme>(m_settings.bindableNotchTheme(), [this, &grid] { grid.showTheme(m_settings.notchTheme()); });
    connect(&grid, &ThemeGrid::chosen, this, [this](NotchTheme theme) { m_settings.setNotchTheme(theme); });
}

} // namespace ostrelle
