#include "records/ClipChange.h"

#include "records/ClipCodec.h"
#include "records/RecordText.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace ostrelle {
namespace {

const QLatin1StringView kTop("top");
const QLatin1StringView kDate("date");
const QLatin1StringView kPin("pin");
const QLatin1StringView kPinned("pinned");
const QLatin1StringView kDelete("delete");

auto findPosition(StoredClips &clips, const QUuid &id)
{
    return std::find_if(clips.begin(), clips.end(), [&](const StoredClip &clip) { return clip.item.id == id; });
}

std::optional<QUuid> idOf(const QJsonValue &value)
{
    return uuidFromText(value.toString().toLatin1());
}

std::optional<ClipChange::Any> parseRemoved(const QJsonArray &array)
{
    ClipChange::Removed removed;
    for (const QJsonValue &value : array) {
        const std::optional<QUuid> id = idOf(value);
        if (!id)
            return std::nullopt;
        removed.ids.append(*id);
    }
    return removed;
}

} // namespace

bool moveToTop(StoredClips &clips, const ClipChange::Moved &change)
{
    const auto position = findPosition(clips, change.id);
    if (position == clips.end())
        return false;
    StoredClip clip = std::move(*position);
    clip.item.date = change.date;
    clip.isCurrent = false;
    clips.erase(position);
    clips.push_front(std::move(clip));
    return true;
}

bool setPinned(StoredClips &clips, const ClipChange::Pinned &change)
{
    StoredClip *const clip = findClip(clips, change.id);
    if (!clip || clip->item.pinned == change.pinned)
        return false;
    clip->item.pinned = change.pinned;
    clip->isCurrent = false;
    return true;
}

StoredClips take(StoredClips &clips, const ClipChange::Removed &change)
{
    const QSet<QUuid> ids(change.ids.begin(), change.ids.end());
    const auto kept = std::stable_partition(clips.begin(), clips.end(),
                                            [&](const StoredClip &clip) { return !ids.contains(clip.item.id); });
    StoredClips taken(std::make_move_iterator(kept), std::make_move_iterator(clips.end()));
    clips.erase(kept, clips.end());
    return taken;
}

StoredClip *findClip(StoredClips &clips, const QUuid &id)
{
    const auto position = findPosition(clips, id);
    return position == clips.end() ? nullptr : &*position;
}

QByteArray changeLine(const ClipChange::Moved &change)
{
    return "{\"top\":\"" + uuidText(change.id) + "\",\"date\":" + dateText(change.date) + '}';
}

QByteArray changeLine(const ClipChange::Pinned &change)
{
    return "{\"pin\":\"" + uuidText(change.id) + "\",\"pinned\":" + (change.pinned ? "true" : "false") + '}';
}

QByteArray changeLine(const ClipChange::Removed &change)
{
    QByteArray line = "{\"delete\":[";
    for (const QUuid &id : change.ids)
        line += (line.endsWith('[') ? "\"" : ",\"") + uuidText(id) + '"';
    return line + "]}";
}

std::optional<ClipChange::Any> parseChange(QByteArrayView line)
{
    const QJsonObject object = QJsonDocument::fromJson(line.toByteArray()).object();
    if (const std::optional<QUuid> id = idOf(object.value(kTop)); id && object.value(kDate).isDouble())
        return ClipChange::Moved{*id, object.value(kDate).toDouble()};
    if (const std::optional<QUuid> id = idOf(object.value(kPin)); id && object.value(kPinned).isBool())
        return ClipChange::Pinned{*id, object.value(kPinned).toBool()};
    if (object.value(kDelete).isArray())
        return parseRemoved(object.value(kDelete).toArray());
    return std::nullopt;
}

QByteArray fingerprint(const StoredClips &clips)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const StoredClip &clip : clips)
        hash.addData(uuidText(clip.item.id) + dateText(clip.item.date) + (clip.item.pinned ? '+' : '-'));
    return hash.result().toHex();
}

} // namespace ostrelle
