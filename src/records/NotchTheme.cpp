#include "records/NotchTheme.h"

#include "records/RawValues.h"

namespace ostrelle {
namespace {

struct ThemeTexts
{
    QString rawValue;
    QString title;
    QString blurb;
};

const ThemeTexts &textsOf(NotchTheme theme)
{
    static const std::array<ThemeTexts, kAllNotchThemes.size()> kTexts = {{
        {QStringLiteral("spectrum"), QStringLiteral("Spectrum"),
         QStringLiteral("Pink through cyan — the app's own sweep")},
        {QStringLiteral("sunset"), QStringLiteral("Sunset"), QStringLiteral("Amber falling into coral and violet")},
        {QStringLiteral("aurora"), QStringLiteral("Aurora"), QStringLiteral("Mint and cyan over deep indigo")},
        {QStringLiteral("ember"), QStringLiteral("Ember"), QStringLiteral("Gold burning down to crimson")},
        {QStringLiteral("ultraviolet"), QStringLiteral("Ultraviolet"),
         QStringLiteral("Violet and magenta, close to black")},
        {QStringLiteral("frost"), QStringLiteral("Frost"), QStringLiteral("Clear glass with a breath of ice")},
    }};
    return kTexts.at(static_cast<std::size_t>(theme));
}

} // namespace

QString rawValue(NotchTheme theme)
{
    return textsOf(theme).rawValue;
}

std::optional<NotchTheme> notchThemeFromRawValue(QStringView raw)
{
    return findByRawValue(kAllNotchThemes, raw);
}

QString title(NotchTheme theme)
{
    return textsOf(theme).title;
}

QString blurb(NotchTheme theme)
{
    return textsOf(theme).blurb;
}

} // namespace ostrelle
