#include "records/NotchSizeText.h"

#include <cmath>

namespace ostrelle {
namespace {

std::optional<double> positiveNumber(QStringView text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || number <= 0)
        return std::nullopt;
    return number;
}

} // namespace

std::optional<QSizeF> notchSizeFromText(QStringView text)
{
    const qsizetype cross = text.indexOf(u'x');
    if (cross < 0)
        return std::nullopt;
    const std::optional<double> width = positiveNumber(text.first(cross));
    const std::optional<double> height = positiveNumber(text.sliced(cross + 1));
    if (!width || !height)
        return std::nullopt;
    return QSizeF(*width, *height);
}

QString notchSizeText(QSizeF size)
{
    return QString::number(size.width()) + u'x' + QString::number(size.height());
}

} // namespace ostrelle
