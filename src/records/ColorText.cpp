#include "records/ColorText.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

/// Whoever pastes a book did not mean a colour.
constexpr qsizetype kLongestColor = 100;

enum class Unit { None, Percent, Degrees };

struct Quantity
{
    double value = 0;
    Unit unit = Unit::None;
};

using Quantities = std::array<Quantity, 3>;

std::optional<SampledColor> fromHexDigits(const QString &digits)
{
    const qsizetype width = digits.size() / 3;
    const auto component = [&](qsizetype index) {
        const int value = digits.mid(index * width, width).toInt(nullptr, 16);
        return (width == 1 ? value * 17 : value) / 255.0;
    };
    return SampledColor{component(0), component(1), component(2)};
}

std::optional<Quantity> quantityFrom(QString word)
{
    Unit unit = Unit::None;
    const auto takeUnit = [&](const QString &sign, Unit meaning) {
        if (unit == Unit::None && word.endsWith(sign, Qt::CaseInsensitive)) {
            word.chop(sign.size());
            unit = meaning;
        }
    };
    takeUnit(QStringLiteral("%"), Unit::Percent);
    takeUnit(QStringLiteral("°"), Unit::Degrees);
    takeUnit(QStringLiteral("deg"), Unit::Degrees);
    bool isNumber = false;
    const double value = word.toDouble(&isNumber);
    return isNumber ? std::optional(Quantity{value, unit}) : std::nullopt;
}

/// "30°, 100%, 50%", or with spaces only.
std::optional<Quantities> quantitiesFrom(const QString &text)
{
    const QStringList words = text.contains(u',') ? text.split(u',') : text.simplified().split(u' ');
    Quantities quantities;
    if (words.size() != static_cast<qsizetype>(quantities.size()))
        return std::nullopt;
    for (std::size_t i = 0; i < quantities.size(); ++i) {
        const auto quantity = quantityFrom(words[static_cast<qsizetype>(i)].trimmed());
        if (!quantity)
            return std::nullopt;
        quantities[i] = *quantity;
    }
    return quantities;
}

/// 0 ... 1 where `full` stands for 1, or nothing outside; what is no number at all included.
std::optional<double> portion(double value, double full)
{
    return value >= 0 && value <= full ? std::optional(value / full) : std::nullopt;
}

std::optional<SampledColor> fromRgb(const Quantities &quantities)
{
    std::array<double, 3> components{};
    for (std::size_t i = 0; i < components.size(); ++i) {
        const auto &[value, unit] = quantities[i];
        const auto component = portion(value, unit == Unit::Percent ? 100 : 255);
        if (!component || unit == Unit::Degrees)
            return std::nullopt;
        components[i] = *component;
    }
    return SampledColor{components[0], components[1], components[2]};
}

std::optional<SampledColor> fromHsl(const Quantities &quantities)
{
    const auto &[hue, saturation, lightness] = quantities;
    const auto turn = portion(hue.value, 360);
    const auto s = portion(saturation.value, 100);
    const auto l = portion(lightness.value, 100);
    if (!turn || !s || !l || hue.unit == Unit::Percent || saturation.unit != Unit::Percent ||
        lightness.unit != Unit::Percent)
        return std::nullopt;
    // CSS Color Module Level 4, "HSL to sRGB".
    const auto component = [&](double twelfths) {
        const double k = std::fmod(twelfths + *turn * 12, 12);
        return *l - *s * std::min(*l, 1 - *l) * std::max(-1.0, std::min({k - 3, 9 - k, 1.0}));
    };
    return SampledColor{component(0), component(8), component(4)};
}

} // namespace

std::optional<SampledColor> colorFromText(QStringView text)
{
    static const QRegularExpression hex(QStringLiteral("^(?:#([0-9a-f]{3})|#?([0-9a-f]{6}))$"),
                                        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression function(QStringLiteral("^(rgb|hsl)\\s*\\(([^()]*)\\)$"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QString word = text.trimmed().left(kLongestColor + 1).toString();
    if (word.size() > kLongestColor)
        return std::nullopt;
    if (const auto match = hex.match(word); match.hasMatch())
        return fromHexDigits(match.captured(match.lastCapturedIndex()));
    const auto match = function.match(word);
    const auto quantities = quantitiesFrom(match.hasMatch() ? match.captured(2) : word);
    if (!quantities)
        return std::nullopt;
    const bool isHsl =
        match.hasMatch() ? match.captured(1).toLower() == u"hsl" : quantities->front().unit == Unit::Degrees;
    return isHsl ? fromHsl(*quantities) : fromRgb(*quantities);
}

} // namespace ostrelle
