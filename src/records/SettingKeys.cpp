#include "records/SettingKeys.h"

#include "records/NotchSizeText.h"
#include "records/SettingJson.h"
#include "records/SettingValues.h"

#include <QJsonArray>
#include <QJsonObject>

#include <array>
#include <cmath>
#include <limits>

namespace ostrelle {
namespace {

using namespace SettingNames;

template <typename Values>
QStringList rawValuesOf(const Values &values)
{
    QStringList raw;
    for (const auto value : values)
        raw.append(rawValue(value));
    return raw;
}

SettingKey row(QStringView key, SettingType type, const QString &help, const QStringList &allowed = {})
{
    return {key, type, allowed, settingToJson(SettingValues(), key), help};
}

std::array<SettingKey, 18> makeTable()
{
    using Type = SettingType;
    const QStringList modules = rawValuesOf(kAllModules);
    return {
        row(kShowAutomatically, Type::Boolean,
            QStringLiteral("Show the closed notch; false: nothing is drawn until it opens")),
        row(kAnimationIntensity, Type::String, QStringLiteral("Character of every movement"),
            rawValuesOf(kAllAnimationIntensities)),
        row(kAppearance, Type::String, QStringLiteral("Light or dark, or as the desktop has it"),
            rawValuesOf(kAllAppearancePreferences)),
        row(kNotchTheme, Type::String, QStringLiteral("Gradient of the open notch"), rawValuesOf(kAllNotchThemes)),
        row(kHapticFeedback, Type::Boolean, QStringLiteral("Haptic ticks")),
        row(kHoverOpenDelay, Type::Double, QStringLiteral("Seconds of hovering that open; 0 never opens")),
        row(kCatchDraggedFiles, Type::Boolean, QStringLiteral("Catch files dragged to the top of the screen")),
        row(kAutoCheckUpdates, Type::Boolean, QStringLiteral("Check for updates by itself")),
        row(kSkippedUpdateVersion, Type::OptionalString, QStringLiteral("Version that is not offered again")),
        row(kModuleOrder, Type::StringList, QStringLiteral("Order of the tools"), modules),
        row(kEnabledModules, Type::StringList, QStringLiteral("Tools that are shown"), modules),
        row(kClipboardEnabled, Type::Boolean, QStringLiteral("Record what is copied")),
        row(kClipboardLimit, Type::Integer, QStringLiteral("Items kept, apart from pinned ones")),
        row(kIgnoreConcealed, Type::Boolean, QStringLiteral("Leave out what is marked as secret or passing")),
        row(kClearOnQuit, Type::Boolean, QStringLiteral("Clear the history at quit")),
        row(kExcludedApps, Type::StringList, QStringLiteral("Applications whose copies are not recorded")),
        row(kHasCompletedOnboarding, Type::Boolean, QStringLiteral("The first run has been completed")),
        row(kDisplayNotch, Type::StringMap, QStringLiteral("Camera notches: output name to \"WIDTHxHEIGHT\"")),
    };
}

const std::array<SettingKey, 18> &table()
{
    static const std::array<SettingKey, 18> kTable = makeTable();
    return kTable;
}

bool isWholeNumber(const QJsonValue &value)
{
    using Limits = std::numeric_limits<int>;
    const double number = value.toDouble();
    return value.isDouble() && std::trunc(number) == number && number >= Limits::min() && number <= Limits::max();
}

QString notOneOf(const QStringList &allowed)
{
    return QStringLiteral("is not one of ") + allowed.join(QStringLiteral(", "));
}

std::optional<QString> stringProblem(const SettingKey &key, const QJsonValue &value)
{
    if (!key.allowed.isEmpty() && !key.allowed.contains(value.toString()))
        return notOneOf(key.allowed);
    if (!value.isString())
        return QStringLiteral("expects a string");
    return std::nullopt;
}

std::optional<QString> listProblem(const SettingKey &key, const QJsonValue &value)
{
    const QString wanted = QStringLiteral("expects a list of strings");
    if (!value.isArray())
        return wanted;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isString())
            return wanted;
        if (!key.allowed.isEmpty() && !key.allowed.contains(element.toString()))
            return QStringLiteral("holds \"%1\", which ").arg(element.toString()) + notOneOf(key.allowed);
    }
    return std::nullopt;
}

std::optional<QString> sizesProblem(const QJsonValue &value)
{
    if (!value.isObject())
        return QStringLiteral("expects an object of output names with sizes such as \"185x32\"");
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (!notchSizeFromText(entry.value().toString()))
            return QStringLiteral("expects a size such as \"185x32\" for \"%1\"").arg(entry.key());
    }
    return std::nullopt;
}

std::optional<QString> problemUnless(bool isFine, const QString &problem)
{
    return isFine ? std::nullopt : std::optional(problem);
}

} // namespace

std::span<const SettingKey> allSettingKeys()
{
    return table();
}

const SettingKey *findSettingKey(QStringView key)
{
    for (const SettingKey &candidate : table()) {
        if (candidate.key == key)
            return &candidate;
    }
    return nullptr;
}

std::optional<QString> settingProblem(const SettingKey &key, const QJsonValue &value)
{
    switch (key.type) {
    case SettingType::Boolean:
        return problemUnless(value.isBool(), QStringLiteral("expects true or false"));
    case SettingType::Integer:
        return problemUnless(isWholeNumber(value), QStringLiteral("expects a whole number"));
    case SettingType::Double:
        return problemUnless(value.isDouble(), QStringLiteral("expects a number"));
    case SettingType::String:
        return stringProblem(key, value);
    case SettingType::OptionalString:
        return problemUnless(value.isString() || value.isNull(), QStringLiteral("expects a string or null"));
    case SettingType::StringList:
        return listProblem(key, value);
    case SettingType::StringMap:
        return sizesProblem(value);
    }
    Q_UNREACHABLE();
}

} // namespace ostrelle
