#pragma once

#include <QColor>

#include <algorithm>

namespace ostrelle {

/// The colour with its opacity multiplied by `factor`, which a spring may carry beyond 0 and 1.
inline QColor faded(QColor color, double factor)
{
    color.setAlphaF(static_cast<float>(std::clamp(color.alphaF() * factor, 0.0, 1.0)));
    return color;
}

/// Between two colours, opacity included; 0 gives `from`, 1 `to`.
inline QColor mixed(const QColor &from, const QColor &to, double amount)
{
    const auto part = [amount](float a, float b) { return static_cast<float>(a + (b - a) * amount); };
    const auto unit = [](float value) { return value < 0 ? 0.0F : value > 1 ? 1.0F : value; };
    return QColor::fromRgbF(unit(part(from.redF(), to.redF())), unit(part(from.greenF(), to.greenF())),
                            unit(part(from.blueF(), to.blueF())), unit(part(from.alphaF(), to.alphaF())));
}

} // namespace ostrelle
