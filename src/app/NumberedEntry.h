#pragma once

#include "app/RequestRouter.h"

#include <functional>

namespace ostrelle {

/// Runs `act` on the index of the entry that the request numbers, from 1, among `count` entries of `tool`; or answers
/// why there is none.
RequestAnswer onNumberedEntry(const QString &tool, qsizetype count, const QJsonObject &request,
                              const std::function<void(int index)> &act);

} // namespace ostrelle
