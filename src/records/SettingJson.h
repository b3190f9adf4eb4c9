#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringView>

namespace ostrelle {

class DefaultsDatabase;
struct SettingValues;

/// The value of a key of the table of settings, as it is stored; null for an unset optional, undefined for an unknown
/// key.
QJsonValue settingToJson(const SettingValues &values, QStringView key);

/// Stores a valid value of a key of the table, or removes it when it is null. Order and choice of the tools are read
/// together, so both are stored, as they are in force then.
void storeSetting(DefaultsDatabase &database, const QString &key, const QJsonValue &value);

} // namespace ostrelle
