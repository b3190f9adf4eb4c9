#include "windows/onboarding/LookPage.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "windows/ThemeGrid.h"
#include "windows/controls/SegmentedPicker.h"
#include "windows/onboarding/LabelledRow.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/PageCard.h"
#include "windows/onboarding/StepHeader.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr ThemeGrid::Measures kThemes{
    .padding = QMargins(), .leastCell = 174, .swatch = {.miniature = {166, 90}, .padding = 4}};
constexpr int kThemesTop = 119;
constexpr int kCardTop = 438;
constexpr int kCardHeight = 46;
constexpr int kSegmentsWidth = 220;

} // namespace

LookPage::LookPage(const ControlContext &context, SettingsStore &settings, QWidget *parent)
    : QWidget(parent)
    , m_settings(settings)
{
    makeChild<StepHeader>(this, context, QStringLiteral("Make it yours"),
                          QStringList{QStringLiteral("Open, the form is black glass with the light on in one corner."),
                                      QStringLiteral("Six gradients to pick from.")});
    addThemes(context);
    addAppearance(context);
}

/// The miniatures begin and end on the page's margins.
void LookPage::addThemes(const ControlContext &context)
{
    auto &grid = makeChild<ThemeGrid>(this, context, kThemes);
    const int padding = static_cast<int>(kThemes.swatch.padding);
    const int width = onboarding::kPage.width() - 2 * (onboarding::kMargin - padding);
    grid.setGeometry(onboarding::kMargin - padding, kThemesTop, width, grid.heightForWidth(width));
    connect(&grid, &ThemeGrid::chosen, this, [this](NotchTheme theme) { m_settings.setNotchTheme(theme); });
    const auto show = [this, &grid] { grid.showTheme(m_settings.notchTheme()); };
    show();
    m_themeWatch = m_settings.bindableNotchTheme().addNotifier(show);
}

void LookPage::addAppearance(const ControlContext &context)
{
    auto &card = makeChild<PageCard>(this, context);
    card.setGeometry(onboarding::kMargin, kCardTop, onboarding::kPage.width() - 2 * onboarding::kMargin, kCardHeight);
    const QStringList choices = {QStringLiteral("System"), QStringLiteral("Light"), QStringLiteral("Dark")};
    auto &picker = makeChild<SegmentedPicker>(&card, context, choices, kSegmentsWidth);
    picker.setAccessibleName(QStringLiteral("Appearance"));
    auto &row = makeChild<LabelledRow>(&card, context, QStringLiteral("Appearance"), &picker);
    row.setGeometry(card.rect());

    connect(&picker, &SegmentedPicker::chosen, this, [this](int index) {
        m_settings.setAppearance(kAllAppearancePreferences.at(static_cast<std::size_t>(index)));
    });
    const auto show = [this, &picker] {
        const auto &all = kAllAppearancePreferences;
        picker.showCurrent(static_cast<int>(std::find(all.begin(), all.end(), m_settings.appearance()) - all.begin()));
    };
    show();
    m_appearanceWatch = m_settings.bindableAppearance().addNotifier(show);
}

} // namespace ostrelle
