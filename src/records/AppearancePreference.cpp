#include "records/AppearancePreference.h"

#include "records/RawValues.h"

namespace ostrelle {

QString rawValue(AppearancePreference preference)
{
    switch (preference) {
    case AppearancePreference::System:
        return QStringLiteral("system");
    case AppearancePreference::Light:
        return QStringLiteral("light");
    case AppearancePreference::Dark:
        return QStringLiteral("dark");
    }
    Q_UNREACHABLE();
}

std::optional<AppearancePreference> appearancePreferenceFromRawValue(QStringView raw)
{
    return findByRawValue(kAllAppearancePreferences, raw);
}

} // namespace ostrelle
