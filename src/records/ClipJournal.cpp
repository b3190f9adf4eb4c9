#include "records/ClipJournal.h"

#include "foundation/AtomicFile.h"
#include "records/ClipCodec.h"
#include "records/ClipOutput.h"
#include "records/ClipParser.h"
#include "records/ClipWindow.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ostrelle {
namespace {

// Small lines of a burst are written together; a record's value goes out as it is.
constexpr qsizetype kGathered = 64 * 1024;

QByteArray headLine(const QByteArray &base)
{
    return "{\"base\":\"" + base + "\"}\n";
}

/// Writes consecutive pieces from one place on.
class Appender
{
public:
    Appender(const FileDescriptor &file, qint64 offset)
        : m_file(file)
        , m_written(offset)
    {
    }

    qint64 position() const { return m_written + m_gathered.size(); }
    bool append(const QByteArray &bytes)
    {
        if (bytes.size() < kGathered) {
            m_gathered += bytes;
            return m_gathered.size() < kGathered || flush();
        }
        if (!flush() || !writeAt(m_file, m_written, bytes))
            return false;
        m_written += bytes.size();
        return true;
    }
    bool flush()
    {
        if (!writeAt(m_file, m_written, m_gathered))
            return false;
        m_written += m_gathered.size();
        m_gathered.clear();
        return true;
    }

private:
    const FileDescriptor &m_file;
    qint64 m_written;
    QByteArray m_gathered;
};

/// Puts an insertion's record into the list; one that is there already gives way.
void insert(StoredClips &clips, StoredClip clip)
{
    take(clips, {{clip.item.id}});
    clips.push_front(std::move(clip));
}

bool apply(const ClipChange::Any &change, StoredClips &clips, bool &hasRemovals)
{
    if (const auto *moved = std::get_if<ClipChange::Moved>(&change)) {
        moveToTop(clips, *moved);
    } else if (const auto *pinned = std::get_if<ClipChange::Pinned>(&change)) {
        setPinned(clips, *pinned);
    } else if (const auto *removed = std::get_if<ClipChange::Removed>(&change)) {
        take(clips, *removed);
        hasRemovals = true;
    }
    return true;
}

/// Tells each written record its place. Whoever has a file already was written whole in the meantime.
void adopt(const ClipJournal::Lines &lines, const std::deque<qint64> &offsets,
           const std::shared_ptr<const FileDescriptor> &file, StoredClips &clips)
{
    auto offset = offsets.begin();
    for (const ClipJournal::Line &line : lines) {
        const qint64 at = *offset++;
        StoredClip *const clip = line.inserted.isNull() ? nullptr : findClip(clips, line.inserted);
        if (!clip || clip->file)
            continue;
        clip->file = file;
        clip->record = {at + line.recordBegin, line.recordLength};
        clip->value = {at + line.before.size(), line.value.size()};
        clip->pendingValue = QByteArray();
    }
}

} // namespace

ClipJournal::Line ClipJournal::line(const StoredClip &inserted)
{
    const ClipFrame frame = clipFrame(inserted.item, inserted.hasImageData);
    Line line;
    line.before = kInsertedBefore.toByteArray() + frame.before;
    line.value = inserted.pendingValue;
    line.after = frame.after + kInsertedAfter.toByteArray() + '\n';
    line.inserted = inserted.item.id;
    line.recordBegin = kInsertedBefore.size();
    line.recordLength = frame.before.size() + line.value.size() + frame.after.size();
    return line;
}

ClipJournal::Line ClipJournal::line(const QByteArray &change)
{
    Line line;
    line.before = change + '\n';
    return line;
}

ClipJournal::ClipJournal(QString path)
    : m_path(std::move(path))
{
}

ClipJournal::State ClipJournal::replay(StoredClips &clips, bool &hasRemovals)
{
    const int descriptor = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ENOENT ? State::Missing : State::Damaged;
    m_file = std::make_shared<const FileDescriptor>(descriptor);
    ClipWindow window(*m_file);
    const QByteArray expected = headLine(fingerprint(clips));
    while (window.bytes().size() < expected.size() && window.more()) {
    }
    if (window.hasFailed())
        return State::Damaged;
    const QByteArrayView head = window.bytes().first(std::min(window.bytes().size(), expected.size()));
    if (head == expected)
        return replayLines(window, clips, hasRemovals);
    // Whoever was killed at its first line had not been told that anything was saved.
    if (head.size() < expected.size() && !head.contains('\n'))
        return State::Missing;
    return head.startsWith("{\"base\":\"") && head.endsWith("\"}\n") ? State::Spent : State::Damaged;
}

ClipJournal::State ClipJournal::replayLines(ClipWindow &window, StoredClips &clips, bool &hasRemovals)
{
    ClipParser parser;
    window.advance(headLine(fingerprint({})).size());
    for (;;) {
        m_size = window.offset();
        qsizetype length = -1;
        while ((length = window.bytes().indexOf('\n')) < 0) {
            if (!window.more())
                return window.hasFailed() ? State::Damaged : State::Good;
        }
        if (!replayLine(window.bytes().first(length), parser, clips, hasRemovals)) {
            const bool isLast = window.bytes().size() == length + 1 && !window.more();
            return isLast ? State::Good : State::Damaged;
        }
        window.advance(length + 1);
    }
}

bool ClipJournal::replayLine(QByteArrayView line, ClipParser &parser, StoredClips &clips, bool &hasRemovals) const
{
    if (!line.startsWith(kInsertedBefore)) {
        const std::optional<ClipChange::Any> change = parseChange(line);
        return change && apply(*change, clips, hasRemovals);
    }
    bool isCompact = true;
    const char *const begin = line.data() + kInsertedBefore.size();
    const char *const lineEnd = line.data() + line.size();
    const char *const end = endOfObject(begin, lineEnd, isCompact);
    if (!end || QByteArrayView(end, lineEnd - end) != kInsertedAfter)
        return false;
    std::optional<StoredClip> clip = parser.parse({begin, end - begin}, isCompact);
    if (!clip)
        return false;
    clip->file = m_file;
    clip->record.offset += m_size + kInsertedBefore.size();
    clip->value.offset += m_size + kInsertedBefore.size();
    insert(clips, std::move(*clip));
    return true;
}

std::optional<QString> ClipJournal::append(const QByteArray &base, const Lines &lines, StoredClips &clips)
{
    const auto failed = [this](const char *what) -> std::optional<QString> {
        const int error = errno;
        // Nothing half-written may stand where the next line is going to be.
        if (m_isWritable && ::ftruncate(m_file->get(), m_size) != 0)
            return QStringLiteral("cannot shorten the journal: ") + qt_error_string(errno);
        return QLatin1String(what) + QStringLiteral(": ") + qt_error_string(error);
    };
    const bool isNew = m_size == 0;
    if (!openForWriting())
        return failed("cannot open the journal");
    Appender appender(*m_file, m_size);
    std::deque<qint64> offsets;
    if (isNew && !appender.append(headLine(base)))
        return failed("cannot write the journal");
    for (const Line &line : lines) {
        offsets.push_back(appender.position());
        if (!appender.append(line.before) || !appender.append(line.value) || !appender.append(line.after))
            return failed("cannot write the journal");
    }
    if (!appender.flush() || ::fdatasync(m_file->get()) != 0)
        return failed("cannot write the journal");
    if (isNew && !syncFolder(QFile::encodeName(QFileInfo(m_path).path())))
        return failed("cannot sync the folder");
    m_size = appender.position();
    adopt(lines, offsets, m_file, clips);
    return std::nullopt;
}

bool ClipJournal::openForWriting()
{
    if (!m_isWritable) {
        const int flags = O_RDWR | O_NONBLOCK | O_CLOEXEC | (m_file ? 0 : O_CREAT | O_NOFOLLOW);
        auto file = std::make_shared<const FileDescriptor>(::open(QFile::encodeName(m_path).constData(), flags, 0600));
        if (!*file)
            return false;
        m_file = std::move(file);
        m_isWritable = true;
    }
    // Cuts off a torn line of a killed process.
    return ::ftruncate(m_file->get(), m_size) == 0;
}

bool ClipJournal::isLinked() const
{
    struct stat status = {};
    return m_file && ::fstat(m_file->get(), &status) == 0 && status.st_nlink > 0;
}

bool ClipJournal::remove()
{
    m_file.reset();
    m_isWritable = false;
    m_size = 0;
    return ::unlink(QFile::encodeName(m_path).constData()) == 0 || errno == ENOENT;
}

bool ClipJournal::setAside()
{
    // What stands before the damage lives on in the list, and can be erased from there alone.
    const bool isKept = m_size > 0 ? keepRest() : setAsideUnreadable(m_path).has_value();
    return isKept && remove();
}

bool ClipJournal::keepRest() const
{
    struct stat status = {};
    if (!m_file || ::fstat(m_file->get(), &status) != 0)
        return false;
    ClipOutput rest(unreadableName(m_path));
    rest.copy(*m_file, {m_size, status.st_size - m_size});
    return rest.finish() && rest.replace();
}

} // namespace ostrelle
