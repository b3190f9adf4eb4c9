#include "notch/GradientSampler.h"

#include "notch/ThemeGradients.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {

GradientSampler::GradientSampler(std::span<const QColor> colors, const QPointF &start, const QPointF &end)
    : m_start(start)
{
    for (const QColor &color : colors)
        m_colors.push_back({color.redF(), color.greenF(), color.blueF()});
    const QPointF line = end - start;
    const double lengthSquared = QPointF::dotProduct(line, line);
    if (lengthSquared > 0)
        m_direction = line * static_cast<double>(colors.size() - 1) / lengthSquared;
}

GradientSampler::Color GradientSampler::at(const QPointF &position) const
{
    const double last = static_cast<double>(m_colors.size()) - 1;
    const double place = std::clamp(QPointF::dotProduct(position - m_start, m_direction), 0.0, last);
    const auto index = std::min(static_cast<std::size_t>(place), m_colors.size() - 2);
    const auto part = static_cast<float>(place - static_cast<double>(index));
    Color mixed{};
    for (std::size_t i = 0; i < mixed.size(); ++i)
        mixed[i] = m_colors[index][i] + (m_colors[index + 1][i] - m_colors[index][i]) * part;
    return mixed;
}

CornerFalloff::CornerFalloff(const QSizeF &surface, double reach)
    : m_centre(kFalloffCentreX * surface.width(), kFalloffCentreY * surface.height())
    , m_reach(reach)
{
}

double CornerFalloff::at(const QPointF &position) const
{
    const QPointF offset = position - m_centre;
    return cornerFalloff(std::sqrt(QPointF::dotProduct(offset, offset)), m_reach);
}

} // namespace ostrelle
