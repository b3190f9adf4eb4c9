#include "clipboard/RelativeAge.h"

#include "records/RecordText.h"

#include <QDateTime>

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

constexpr double kShortestAge = 45;

struct Unit
{
    double seconds;
    QStringView one;
    QStringView many;
};

// The mean Gregorian year has 365.2425 days.
constexpr std::array<Unit, 7> kUnits = {{
    {31556952, u" yr.", u" yr."},
    {2629746, u" mo.", u" mo."},
    {604800, u" wk.", u" wk."},
    {86400, u" day", u" days"},
    {3600, u" hr.", u" hr."},
    {60, u" min.", u" min."},
    {1, u" sec.", u" sec."},
}};

// A date of any size can stand in a store that somebody else wrote.
constexpr double kLargestCount = 999'999;

} // namespace

QString relativeAge(double seconds)
{
    if (!(seconds >= kShortestAge))
        return QStringLiteral("now");
    for (const Unit &unit : kUnits) {
        if (seconds < unit.seconds)
            continue;
        const auto count = static_cast<qint64>(std::min(seconds / unit.seconds, kLargestCount));
        return QString::number(count) + (count == 1 ? unit.one : unit.many).toString();
    }
    Q_UNREACHABLE();
}

QString relativeAgeOf(double date)
{
    return relativeAge(referenceDate(QDateTime::currentMSecsSinceEpoch()) - date);
}

} // namespace ostrelle
