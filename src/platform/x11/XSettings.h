#pragma once

#include <QByteArray>
#include <QString>

namespace ostrelle {

/// The string setting of that name in a _XSETTINGS_SETTINGS property (XSETTINGS 0.5); empty when there is none, or the
/// property is not what it should be.
QString xsettingsString(const QByteArray &property, const QByteArray &name);

} // namespace ostrelle
