#pragma once

#include <QJsonObject>
#include <QStringList>

#include <optional>

namespace ostrelle {

/// The request's "paths"; nothing when they are not all absolute.
std::optional<QStringList> requestedPaths(const QJsonObject &request);

} // namespace ostrelle
