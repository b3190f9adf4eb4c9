#include "windows/ThemeGrid.h"

#include "foundation/MakeChild.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kGap = 10;

} // namespace

ThemeGrid::ThemeGrid(const ControlContext &context, const Measures &measures, QWidget *parent)
    : QWidget(parent)
    , m_measures(measures)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (const NotchTheme theme : kAllNotchThemes) {
        auto &swatch = makeChild<ThemeSwatch>(this, context, theme, measures.swatch);
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
    return std::max(1, (room(width) + kGap) / (m_measures.leastCell + kGap));
}

int ThemeGrid::room(int width) const
{
    return width - m_measures.padding.left() - m_measures.padding.right();
}

int ThemeGrid::heightForWidth(int width) const
{
    const int across = columns(width);
    const int rows = (static_cast<int>(m_swatches.size()) + across - 1) / across;
    const QMargins &padding = m_measures.padding;
    return padding.top() + rows * m_measures.swatch.height() + (rows - 1) * kGap + padding.bottom();
}

void ThemeGrid::resizeEvent(QResizeEvent *)
{
    const int across = columns(width());
    const int room = this->room(width());
    const int cell = (room - (across - 1) * kGap) / across;
    const int height = m_measures.swatch.height();
    for (int i = 0; i < static_cast<int>(m_swatches.size()); ++i) {
        // What is left over of the room is shared by the gaps, so that both ends are even.
        const int x = i % across * (room + kGap) / across;
        const int y = i / across * (height + kGap);
        m_swatches[static_cast<std::size_t>(i)]->setGeometry(m_measures.padding.left() + x,
                                                             m_measures.padding.top() + y, cell, height);
    }
}

} // namespace ostrelle
