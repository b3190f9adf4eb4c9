#include "windows/ThemeGrid.h"

#include "foundation/MakeChild.h"

#include <QMargins>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr QMargins kPadding(8, 8, 8, 6);
constexpr int kGap = 10;
constexpr int kLeastCell = 118;
constexpr ThemeSwatch::Measures kMeasures;

} // namespace

ThemeGrid::ThemeGrid(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (const NotchTheme theme : kAllNotchThemes) {
        auto &swatch = makeChild<ThemeSwatch>(this, context, theme, kMeasures);
        connect(&swatch, &QAbstractButton::clicked, this, [this, theme] { Q_EMIT chosen(theme); });
        m_swatches.push_back(&swatch);
    }
}

void ThemeGrid::showTheme(NotchTheme theme)
{
    for (ThemeSwatch *swatch : m_swatches) {
        if (swatch->theme() == theme)
            swatch->setChecked(true);
    }
}

int ThemeGrid::columns(int width) const
{
    return std::max(1, (width - kPadding.left() - kPadding.right() + kGap) / (kLeastCell + kGap));
}

int ThemeGrid::heightForWidth(int width) const
{
    const int across = columns(width);
    const int rows = (static_cast<int>(m_swatches.size()) + across - 1) / across;
    return kPadding.top() + rows * kMeasures.height() + (rows - 1) * kGap + kPadding.bottom();
}

void ThemeGrid::resizeEvent(QResizeEvent *)
{
    const int across = columns(width());
    const int room = width() - kPadding.left() - kPadding.right();
    const int cell = (room - (across - 1) * kGap) / across;
    for (int i = 0; i < static_cast<int>(m_swatches.size()); ++i) {
        const int column = i % across;
        m_swatches[static_cast<std::size_t>(i)]->setGeometry(kPadding.left() + column * (cell + kGap),
                                                             kPadding.top() + i / across * (kMeasures.height() + kGap),
                                                             cell, kMeasures.height());
    }
}

} // namespace ostrelle
