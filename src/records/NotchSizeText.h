#pragma once

#include <QSizeF>
#include <QString>
#include <QStringView>

#include <optional>

namespace ostrelle {

/// The size that "WIDTHxHEIGHT" names: two positive decimal numbers, logical pixels.
std::optional<QSizeF> notchSizeFromText(QStringView text);
QString notchSizeText(QSizeF size);

} // namespace ostrelle
