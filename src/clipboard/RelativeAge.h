#pragma once

#include <QString>

namespace ostrelle {

/// How long ago something was, in English whatever the locale: "now" below 45 seconds and for what lies ahead, else
/// the largest whole unit in abbreviated form, "45 sec.", "5 min.", "3 hr.", "1 day", "2 wk.", "3 mo.", "2 yr.". Months
/// and years have their mean length.
QString relativeAge(double seconds);

/// The age at this moment of a date given in seconds since 2001-01-01 00:00:00 UTC.
QString relativeAgeOf(double date);

} // namespace ostrelle
