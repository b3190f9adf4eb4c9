#include "records/ClipWriter.h"

#include "foundation/AppPaths.h"
#include "foundation/AtomicFile.h"
#include "foundation/Unwritable.h"
#include "records/ClipArray.h"
#include "records/ClipCodec.h"
#include "records/ClipOutput.h"

#include <QFile>
#include <QHash>
#include <QLoggingCategory>

#include <algorithm>
#include <iterator>
#include <malloc.h>
#include <sys/stat.h>
#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcRecords, "ostrelle.records", QtInfoMsg)

// A multiple of three, so that each part of an image is encoded without padding between.
constexpr qsizetype kComparedAtOnce = 3 * 64 * 1024;
constexpr qint64 kReturnedToSystem = 256 * 1024;

/// True when `value`, a stored Base64 text, stands for `image`. Stops at the first part that differs.
bool holdsImage(const StoredClip &clip, const QByteArray &image)
{
    if (!clip.file)
        return clip.pendingValue == image.toBase64();
    qint64 at = clip.value.offset;
    for (qsizetype from = 0; from < image.size(); from += kComparedAtOnce) {
        const QByteArray part = QByteArray::fromRawData(image.constData() + from, image.size() - from)
                                    .first(std::min(kComparedAtOnce, image.size() - from))
                                    .toBase64();
        const std::optional<QByteArray> stored =
            readSpan(*clip.file, {at, std::min<qint64>(part.size(), clip.value.end() - at)});
        if (!stored)
            return false;
        // A foreign writer may have escaped it.
        if (stored->contains('\\')) {
            const std::optional<QByteArray> whole = readSpan(*clip.file, clip.value);
            return whole && decodedImage(*whole) == image;
        }
        if (*stored != part)
            return false;
        at += part.size();
    }
    return at == clip.value.end();
}

bool isLinked(const std::shared_ptr<const FileDescriptor> &file)
{
    struct stat status = {};
    return file && ::fstat(file->get(), &status) == 0 && status.st_nlink > 0;
}

} // namespace

ClipWriter::ClipWriter(const QString &folder)
    : m_folder(folder)
    , m_arrayPath(folder + QStringLiteral("/clipboard.json"))
    , m_journal(folder + QStringLiteral("/clipboard.journal"))
{
}

QList<ClipItem> ClipWriter::load()
{
    removeUnfinishedWrites(m_arrayPath);
    QList<ClipItem> items = read();
    if (std::exchange(m_journalIsSpent, false))
        m_journal.remove();
    return items;
}

bool ClipWriter::isUpToDate() const
{
    return !m_array || isLinked(m_array);
}

QList<ClipItem> ClipWriter::read()
{
    ClipArray array = readClipArray(m_arrayPath);
    m_clips = std::move(array.clips);
    m_array = std::move(array.file);
    m_arraySize = array.size;
    m_arrayFingerprint = fingerprint(m_clips);
    m_keepArrayAside = array.state == ClipArray::State::Undecodable;
    if (m_keepArrayAside)
        qCWarning(lcRecords) << "The clipboard history cannot be read and starts empty; its file is kept";

    if (array.state != ClipArray::State::Good) {
        m_keepJournalAside = true;
    } else {
        bool hasRemovals = false;
        const ClipJournal::State state = m_journal.replay(m_clips, hasRemovals);
        m_journalIsSpent = state == ClipJournal::State::Spent;
        m_keepJournalAside = state == ClipJournal::State::Damaged;
        if (m_keepJournalAside)
            qCWarning(lcRecords) << "The journal of the clipboard history is damaged; what stands before counts";
        // What was erased before a crash can no longer be restored.
        m_mustErase = hasRemovals;
    }

    // The parser's buffers had the size of the largest records.
    ::malloc_trim(0);
    return items();
}

QList<ClipItem> ClipWriter::items() const
{
    QList<ClipItem> items;
    items.reserve(static_cast<qsizetype>(m_clips.size()));
    for (const StoredClip &clip : m_clips)
        items.append(clip.item);
    return items;
}

void ClipWriter::insertAtTop(const ClipItem &item, const QByteArray &image)
{
    StoredClip clip;
    clip.item = item;
    clip.hasImageData = item.kind == ClipItem::Kind::Image;
    clip.pendingValue = encodedValue(item, image);
    m_waitingBytes += clip.pendingValue.size();
    m_lines.push_back(ClipJournal::line(clip));
    m_clips.push_front(std::move(clip));
}

void ClipWriter::moveToTop(const ClipChange::Moved &change)
{
    if (ostrelle::moveToTop(m_clips, change))
        m_lines.push_back(ClipJournal::line(changeLine(change)));
}

void ClipWriter::setPinned(const ClipChange::Pinned &change)
{
    if (ostrelle::setPinned(m_clips, change))
        m_lines.push_back(ClipJournal::line(changeLine(change)));
}

void ClipWriter::trim(const ClipChange::Removed &change)
{
    if (take(m_clips, change).empty())
        return;
    dropInsertions({change.ids.begin(), change.ids.end()});
    m_lines.push_back(ClipJournal::line(changeLine(change)));
}

void ClipWriter::remove(const ClipChange::Removed &change, Erasure erasure)
{
    StoredClips taken = take(m_clips, change);
    if (erasure == Erasure::Final)
        take(m_restorable, change);
    if (taken.empty())
        return;
    if (erasure == Erasure::Final)
        dropInsertions({change.ids.begin(), change.ids.end()});
    m_lines.push_back(ClipJournal::line(changeLine(change)));
    if (erasure == Erasure::Final) {
        m_mustErase = true;
        return;
    }
    std::move(taken.begin(), taken.end(), std::back_inserter(m_restorable));
    m_holdsRestorable = true;
}

void ClipWriter::restore(const QList<ClipItem> &items, const QList<QUuid> &order)
{
    for (const ClipItem &item : items) {
        StoredClips found = take(m_restorable, {{item.id}});
        if (found.empty() && item.kind != ClipItem::Kind::Image) {
            found.emplace_back();
            found.front().pendingValue = encodedValue(item, {});
        }
        for (StoredClip &clip : found) {
            clip.isCurrent = clip.isCurrent && clip.item == item;
            clip.item = item;
            m_clips.push_back(std::move(clip));
        }
    }
    QHash<QUuid, qsizetype> places;
    for (const QUuid &id : order)
        places.insert(id, places.size());
    std::stable_sort(m_clips.begin(), m_clips.end(), [&](const StoredClip &left, const StoredClip &right) {
        return places.value(left.item.id, -1) < places.value(right.item.id, -1);
    });
    m_mustRewrite = true;
}

void ClipWriter::settle()
{
    QSet<QUuid> settled;
    for (const StoredClip &clip : m_restorable)
        settled.insert(clip.item.id);
    dropInsertions(settled);
    m_restorable.clear();
    if (std::exchange(m_holdsRestorable, false))
        m_mustErase = true;
}

void ClipWriter::removeAll()
{
    settle();
    QList<QUuid> ids;
    for (const StoredClip &clip : m_clips)
        ids.append(clip.item.id);
    remove({ids}, Erasure::Final);
    m_mustErase = true;
}

void ClipWriter::save()
{
    if (isSaved())
        return;
    const std::optional<QString> failure = write();
    if (failure && !m_hasFailed && !reportUnwritable(m_folder))
        qCWarning(lcRecords).noquote() << "The clipboard history is not saved:" << *failure;
    m_hasFailed = failure.has_value();
}

void ClipWriter::close()
{
    settle();
    if (m_journal.exists())
        m_mustRewrite = true;
    save();
}

std::optional<QString> ClipWriter::write()
{
    if (!AppPaths::ensurePrivateFolder(m_folder))
        return QStringLiteral("cannot make the folder");
    if (!m_mustErase && canAppend())
        return append();
    std::optional<QString> failure = rewrite();
    // No room for a second array: what can be saved is saved.
    if (failure && !m_lines.empty() && canAppend())
        append();
    return failure;
}

bool ClipWriter::canAppend() const
{
    return !m_mustRewrite && !m_keepJournalAside && m_arraySize > ClipboardStore::kWholeRewriteLimit &&
           isLinked(m_array) && (!m_journal.exists() || m_journal.isLinked());
}

std::optional<QString> ClipWriter::append()
{
    std::optional<QString> failure = m_journal.append(m_arrayFingerprint, m_lines, m_clips);
    if (failure)
        return failure;
    forgetLines();
    // Folding now keeps what is written in proportion to what was changed. If it fails, the next change tries again.
    if (m_journal.size() >= m_arraySize)
        rewrite();
    return std::nullopt;
}

std::optional<QString> ClipWriter::rewrite()
{
    const QByteArray current = fingerprint(m_clips);
    const bool isInArray = current == m_arrayFingerprint && isLinked(m_array);
    // Where changes cancel each other out, a new array would have the fingerprint that the journal names, and a crash
    // between the two steps would make the journal count again.
    if (isInArray && m_journal.exists() && !m_keepJournalAside)
        return syncFolder(QFile::encodeName(m_folder)) ? dropJournal() : QStringLiteral("cannot sync the folder");
    const ClipArrayWritten written =
        writeClipArray(m_arrayPath, m_clips, [this] { return !m_keepArrayAside || keepUnreadableAside(); });
    if (written.file) {
        m_array = written.file;
        m_arraySize = written.size;
        m_arrayFingerprint = current;
        // Until the journal is gone no line may be added to it: it belongs to the array before.
        m_mustRewrite = true;
    }
    if (!written.failure.isEmpty())
        return written.failure;
    return dropJournal();
}

std::optional<QString> ClipWriter::dropJournal()
{
    if (!(m_keepJournalAside ? m_journal.setAside() : m_journal.remove()))
        return QStringLiteral("cannot remove the journal");
    m_keepJournalAside = false;
    m_mustRewrite = false;
    m_mustErase = false;
    m_holdsRestorable = false;
    forgetLines();
    return std::nullopt;
}

bool ClipWriter::keepUnreadableAside()
{
    if (!setAsideUnreadable(m_arrayPath))
        return false;
    m_keepArrayAside = false;
    return true;
}

void ClipWriter::forgetLines()
{
    m_lines.clear();
    // Image buffers come and go in sizes that the allocator would keep.
    if (std::exchange(m_waitingBytes, 0) >= kReturnedToSystem)
        ::malloc_trim(0);
}

/// While nothing can be written, what is gone for good must neither fill the memory nor get to the disk later.
void ClipWriter::dropInsertions(const QSet<QUuid> &ids)
{
    const auto kept = std::remove_if(m_lines.begin(), m_lines.end(), [&](const ClipJournal::Line &line) {
        const bool isGone = !line.inserted.isNull() && ids.contains(line.inserted);
        m_waitingBytes -= isGone ? line.value.size() : 0;
        return isGone;
    });
    m_lines.erase(kept, m_lines.end());
}

StoredClip *ClipWriter::findAnywhere(const QUuid &id)
{
    StoredClip *const clip = findClip(m_clips, id);
    return clip ? clip : findClip(m_restorable, id);
}

std::optional<QByteArray> ClipWriter::image(const QUuid &id)
{
    const StoredClip *const clip = findAnywhere(id);
    if (!clip || !clip->hasImageData)
        return std::nullopt;
    const std::optional<QByteArray> value =
        clip->file ? readSpan(*clip->file, clip->value) : std::optional(clip->pendingValue);
    return value ? decodedImage(*value) : std::nullopt;
}

std::optional<QUuid> ClipWriter::find(const QByteArray &image, const QList<QUuid> &candidates)
{
    for (const QUuid &id : candidates) {
        const StoredClip *const clip = findAnywhere(id);
        if (clip && clip->hasImageData && holdsImage(*clip, image))
            return id;
    }
    return std::nullopt;
}

} // namespace ostrelle
