#include "media_client/ByteCount.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kKilo = 1e3;
constexpr double kMega = 1e6;
constexpr double kGiga = 1e9;

/// `amount` with that many decimals, without a zero at their end.
QString figure(double amount, int decimals)
{
    QString text = QString::number(amount, 'f', decimals);
    while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
        text.chop(1);
    return text;
}

} // namespace

QString byteCountString(qint64 bytes)
{
    if (bytes <= 0)
        return QStringLiteral("Zero KB");
    const auto size = static_cast<double>(bytes);
    // What would round to the next unit's 1 is told in that unit.
    if (std::round(size / kKilo) < kKilo)
        return QString::number(std::max(1.0, std::round(size / kKilo)), 'f', 0) + QStringLiteral(" KB");
    if (std::round(size / kMega * 10) < kKilo * 10)
        return figure(size / kMega, 1) + QStringLiteral(" MB");
    return figure(size / kGiga, 2) + QStringLiteral(" GB");
}

} // namespace ostrelle
