#include "updates/WrittenTime.h"

#include <QDateTime>
#include <QLocale>

#include <unicode/udat.h>
#include <unicode/uloc.h>

#include <array>
#include <memory>

namespace ostrelle {
namespace {

constexpr char kNoWish[] = "en_US";
constexpr int kLongestDate = 128;
constexpr int kLongestName = 128;

struct CloseFormat
{
    void operator()(UDateFormat *format) const { udat_close(format); }
};

/// Qt knows a long date with the day of the week and a short one of numbers, but nothing between them (6.4).
QString abbreviated(QDate date, const QByteArray &locale)
{
    // Both sides in UTC, so that no zone is looked up.
    constexpr std::array<UChar, 3> kZone{u'U', u'T', u'C'};
    UErrorCode status = U_ZERO_ERROR;
    std::array<char, kLongestName> name{}; // without the encoding, with which no territory would be found
    uloc_canonicalize(locale.constData(), name.data(), kLongestName - 1, &status);
    const std::unique_ptr<UDateFormat, CloseFormat> format(udat_open(
        UDAT_NONE, UDAT_MEDIUM, name.data(), kZone.data(), static_cast<int>(kZone.size()), nullptr, 0, &status));
    std::array<UChar, kLongestDate> text{};
    int length = 0;
    if (U_SUCCESS(status))
        length = udat_format(format.get(), static_cast<UDate>(date.startOfDay(Qt::UTC).toMSecsSinceEpoch()),
                             text.data(), kLongestDate, nullptr, &status);
    if (U_FAILURE(status) || length > kLongestDate)
        return date.toString(Qt::ISODate);
    return QString::fromUtf16(text.data(), length);
}

} // namespace

QString writtenTime(const QDateTime &time, const QByteArray &locale)
{
    const QLocale known(QString::fromLatin1(locale));
    if (known == QLocale::c() && locale != kNoWish)
        return writtenTime(time, kNoWish);
    return QStringLiteral("%1 at %2")
        .arg(abbreviated(time.date(), locale), known.toString(time.time(), QLocale::ShortFormat));
}

QByteArray localeOfTimes()
{
    // The first that is set counts (POSIX, "Internationalization Variables").
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        QByteArray value = qgetenv(variable);
        if (value.isEmpty())
            continue;
        const QByteArray name = value.left(value.indexOf('.'));
        if (name != "C" && name != "POSIX")
            return value;
        break;
    }
    return kNoWish;
}

} // namespace ostrelle
