#pragma once

#include <QJsonObject>

namespace ostrelle {

class Services;

/// The state of the running program as "status" gives it; rectangles in global logical pixels.
QJsonObject statusReport(Services &services);

} // namespace ostrelle
