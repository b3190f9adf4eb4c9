#include "records/ClipArray.h"

#include "records/ClipCodec.h"
#include "records/ClipOutput.h"
#include "records/ClipParser.h"
#include "records/ClipWindow.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <vector>

namespace ostrelle {
namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Goes to the next token and returns its first character, or 0 at the end.
char nextToken(ClipWindow &window)
{
    do {
        const QByteArrayView bytes = window.bytes();
        const auto token = std::find_if_not(bytes.begin(), bytes.end(), isSpace);
        window.advance(token - bytes.begin());
    } while (window.bytes().isEmpty() && window.more());
    return window.bytes().isEmpty() ? '\0' : window.bytes().front();
}

/// The record whose brace is the next token; goes behind it.
std::optional<StoredClip> nextRecord(ClipWindow &window, ClipParser &parser)
{
    bool isCompact = true;
    const char *end = nullptr;
    while (!(end = endOfObject(window.bytes().begin(), window.bytes().end(), isCompact))) {
        if (!window.more())
            return std::nullopt;
        isCompact = true;
    }
    const QByteArrayView object = window.bytes().first(end - window.bytes().begin());
    std::optional<StoredClip> clip = parser.parse(object, isCompact);
    if (clip) {
        clip->record.offset += window.offset();
        clip->value.offset += window.offset();
    }
    window.advance(object.size());
    return clip;
}

/// Reads the elements of a JSON array of records one by one.
std::optional<StoredClips> parseArray(ClipWindow &window, const std::shared_ptr<const FileDescriptor> &file)
{
    if (nextToken(window) != '[')
        return std::nullopt;
    window.advance(1);
    StoredClips clips;
    ClipParser parser;
    char token = nextToken(window);
    while (token != ']') {
        std::optional<StoredClip> clip = token == '{' ? nextRecord(window, parser) : std::nullopt;
        if (!clip)
            return std::nullopt;
        clip->file = file;
        clips.push_back(std::move(*clip));
        token = nextToken(window);
        if (token != ',')
            break;
        window.advance(1);
        token = nextToken(window) == '{' ? '{' : '\0'; // no comma before the end
    }
    if (token != ']')
        return std::nullopt;
    window.advance(1);
    return nextToken(window) == '\0' && !window.hasFailed() ? std::optional(std::move(clips)) : std::nullopt;
}

/// Writes records in list order and remembers where they will lie. Records that lie behind each other in one file are
/// copied together, with the commas between them.
class RecordWriter
{
public:
    explicit RecordWriter(ClipOutput &output)
        : m_output(output)
    {
    }

    void write(const StoredClip &clip)
    {
        if (clip.file && clip.isCurrent)
            takeAsItLies(clip);
        else
            writeAnew(clip);
    }
    void finish() { writeRun(); }
    void adopt(StoredClips &clips, const std::shared_ptr<const FileDescriptor> &file) const;

private:
    struct Place
    {
        ByteSpan record;
        ByteSpan value;
    };

    qint64 position() const { return m_output.position() + m_run.length; }
    void takeAsItLies(const StoredClip &clip);
    void writeAnew(const StoredClip &clip);
    void writeRun();

    ClipOutput &m_output;
    std::vector<Place> m_places;
    const FileDescriptor *m_runFile = nullptr;
    ByteSpan m_run;
};

void RecordWriter::takeAsItLies(const StoredClip &clip)
{
    const bool follows = m_runFile == clip.file.get() && clip.record.offset == m_run.end() + 1;
    if (follows) {
        ++m_run.length;
    } else {
        writeRun();
        if (!m_places.empty())
            m_output.append(",");
        m_runFile = clip.file.get();
        m_run = {clip.record.offset, 0};
    }
    const qint64 at = position();
    m_run.length += clip.record.length;
    m_places.push_back({{at, clip.record.length}, {at + clip.value.offset - clip.record.offset, clip.value.length}});
}

void RecordWriter::writeAnew(const StoredClip &clip)
{
    writeRun();
    if (!m_places.empty())
        m_output.append(",");
    const ClipFrame frame = clipFrame(clip.item, clip.hasImageData);
    Place place;
    place.record.offset = m_output.position();
    m_output.append(frame.before);
    place.value.offset = m_output.position();
    if (clip.file)
        m_output.copy(*clip.file, clip.value);
    else
        m_output.append(clip.pendingValue);
    place.value.length = m_output.position() - place.value.offset;
    m_output.append(frame.after);
    place.record.length = m_output.position() - place.record.offset;
    m_places.push_back(place);
}

void RecordWriter::writeRun()
{
    if (m_runFile)
        m_output.copy(*m_runFile, m_run);
    m_runFile = nullptr;
    m_run = {};
}

void RecordWriter::adopt(StoredClips &clips, const std::shared_ptr<const FileDescriptor> &file) const
{
    auto place = m_places.begin();
    for (StoredClip &clip : clips) {
        clip.file = file;
        clip.record = place->record;
        clip.value = place->value;
        clip.isCurrent = true;
        clip.pendingValue = QByteArray();
        ++place;
    }
}

} // namespace

ClipArray readClipArray(const QString &path)
{
    ClipArray array;
    // O_NONBLOCK: a pipe of that name must not stop the start.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const bool isMissing = descriptor < 0 && errno == ENOENT;
    const auto file = std::make_shared<const FileDescriptor>(descriptor);
    if (isMissing)
        return array;
    array.state = ClipArray::State::Undecodable;
    ClipWindow window(*file);
    if (std::optional<StoredClips> clips = parseArray(window, file)) {
        array.state = ClipArray::State::Good;
        array.clips = std::move(*clips);
        array.file = file;
        array.size = window.offset();
    }
    return array;
}

ClipArrayWritten writeClipArray(const QString &path, StoredClips &clips, const std::function<bool()> &beforeReplacing)
{
    ClipArrayWritten written;
    ClipOutput output(path);
    RecordWriter writer(output);
    output.append("[");
    for (const StoredClip &clip : clips)
        writer.write(clip);
    writer.finish();
    output.append("]");
    written.size = output.position();
    if (output.finish()) {
        if (!beforeReplacing())
            written.failure = QStringLiteral("cannot keep the unreadable file aside");
        else
            output.replace();
    }
    if (output.isInPlace()) {
        writer.adopt(clips, output.file());
        written.file = output.file();
    }
    if (written.failure.isEmpty())
        written.failure = output.failure();
    return written;
}

} // namespace ostrelle
