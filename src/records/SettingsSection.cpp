#include "records/SettingsSection.h"

#include "records/RawValues.h"

namespace ostrelle {
namespace {

struct Texts
{
    QString rawValue;
    QString title;
    QString symbol;
};

const Texts &textsOf(SettingsSection section)
{
    static const std::array<Texts, kAllSettingsSections.size()> kTexts = {{
        {QStringLiteral("general"), QStringLiteral("General"), QStringLiteral("gearshape")},
        {QStringLiteral("modules"), QStringLiteral("Modules"), QStringLiteral("square.grid.2x2")},
        {QStringLiteral("shortcuts"), QStringLiteral("Shortcuts"), QStringLiteral("command")},
        {QStringLiteral("appearance"), QStringLiteral("Appearance"), QStringLiteral("circle.lefthalf.filled")},
        {QStringLiteral("privacy"), QStringLiteral("Privacy"), QStringLiteral("hand.raised")},
        {QStringLiteral("about"), QStringLiteral("About"), QStringLiteral("info.circle")},
    }};
    return kTexts.at(static_cast<std::size_t>(section));
}

} // namespace

QString rawValue(SettingsSection section)
{
    return textsOf(section).rawValue;
}

std::optional<SettingsSection> settingsSectionFromRawValue(QStringView raw)
{
    return findByRawValue(kAllSettingsSections, raw);
}

QString title(SettingsSection section)
{
    return textsOf(section).title;
}

QString symbol(SettingsSection section)
{
    return textsOf(section).symbol;
}

} // namespace ostrelle
