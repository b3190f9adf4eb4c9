#pragma once

#include <QJsonValue>
#include <QStringView>

namespace ostrelle {

struct SettingValues;

/// The value of a key of the table of settings, as it is stored; null for an unset optional, undefined for an unknown
/// key.
QJsonValue settingToJson(const SettingValues &values, QStringView key);

} // namespace ostrelle
