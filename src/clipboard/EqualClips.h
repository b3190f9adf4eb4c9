#pragma once

#include "records/ClipItem.h"

#include <QList>

namespace ostrelle {

/// Whether two records stand for one copy. Of records without an image.
bool hasEqualContent(const ClipItem &left, const ClipItem &right);
/// Appends the ids of images that could be equal to `image`: the others need not be read.
void appendCandidates(QList<QUuid> &candidates, const QList<ClipItem> &items, const ClipImage &image);

} // namespace ostrelle
