#pragma once

#include <QDate>
#include <QString>

namespace ostrelle {

/// ostrelle(1) in the mdoc language, from the tables of commands and settings.
QString manualPage(const QDate &date);

} // namespace ostrelle
