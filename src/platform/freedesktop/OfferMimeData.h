#pragma once

#include "platform/ClipboardPort.h"

#include <memory>

class QMimeData;

namespace ostrelle {

/// What the program offers, under every type by which this desktop's programs ask for it. Null for an empty offer.
std::unique_ptr<QMimeData> mimeDataOf(const ClipboardOffer &offer);

} // namespace ostrelle
