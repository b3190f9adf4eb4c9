#include "clipboard/EqualClips.h"

#include "records/ClipText.h"

namespace ostrelle {
namespace {

bool hasEqualText(const ClipItem &left, const ClipItem &right)
{
    if (!left.text || !right.text)
        return left.text.has_value() == right.text.has_value();
    return canonicallyEqual(*left.text, *right.text);
}

} // namespace

bool hasEqualContent(const ClipItem &left, const ClipItem &right)
{
    if (left.kind != right.kind)
        return false;
    return left.kind == ClipItem::Kind::Files ? left.paths == right.paths : hasEqualText(left, right);
}

void appendCandidates(QList<QUuid> &candidates, const QList<ClipItem> &items, const ClipImage &image)
{
    for (const ClipItem &item : items) {
        if (item.kind == ClipItem::Kind::Image && item.image && item.image->byteSize == image.byteSize)
            candidates.append(item.id);
    }
}

} // namespace ostrelle
