#pragma once

#include "foundation/Animated.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace ostrelle {

template <>
struct AnimatedTraits<QPointF>
{
    static constexpr std::size_t kComponents = 2;
    static std::array<double, 2> split(const QPointF &value) { return {value.x(), value.y()}; }
    static QPointF join(const std::array<double, 2> &parts) { return {parts[0], parts[1]}; }
};

template <>
struct AnimatedTraits<QSizeF>
{
    static constexpr std::size_t kComponents = 2;
    static std::array<double, 2> split(const QSizeF &value) { return {value.width(), value.height()}; }
    static QSizeF join(const std::array<double, 2> &parts) { return {parts[0], parts[1]}; }
};

template <>
struct AnimatedTraits<QRectF>
{
    static constexpr std::size_t kComponents = 4;
    static std::array<double, 4> split(const QRectF &value)
    {
        return {value.x(), value.y(), value.width(), value.height()};
    }
    static QRectF join(const std::array<double, 4> &parts) { return {parts[0], parts[1], parts[2], parts[3]}; }
};

} // namespace ostrelle
