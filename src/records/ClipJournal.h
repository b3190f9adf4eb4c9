#pragma once

#include "records/ClipChange.h"
#include "records/StoredClip.h"

#include <QByteArray>
#include <QString>

#include <deque>
#include <memory>

namespace ostrelle {

/// The changes since the array was written, one JSON object per line, in the order in which they happened:
///
///     {"base":"<fingerprint of the list in the array>"}
///     {"insert":<record>}    at the top
///     {"top":"<id>","date":<seconds>}
///     {"pin":"<id>","pinned":<boolean>}
///     {"delete":["<id>",...]}
///
/// The first line ties it to one state of the array. When a crash leaves a journal beside the array that it was already
/// folded into, the fingerprints differ and it is known to be spent.
class ClipJournal
{
public:
    enum class State {
        Missing, ///< also empty
        Good,    ///< up to a torn last line perhaps, which never was acknowledged
        Spent,   ///< belongs to another state of the array
        Damaged  ///< there is more behind a line that makes no sense; what stood before it counts
    };

    /// What is still to be appended. A record's value is shared with the record, not copied.
    struct Line
    {
        QByteArray before;
        QByteArray value;
        QByteArray after;
        QUuid inserted; ///< null: no record in this line
        qsizetype recordBegin = 0;
        qsizetype recordLength = 0;
    };
    using Lines = std::deque<Line>;

    static Line line(const StoredClip &inserted);
    static Line line(const QByteArray &change);

    explicit ClipJournal(QString path);

    /// Applies what is there to `clips`, the list of the array. `hasRemovals` tells whether records left it.
    State replay(StoredClips &clips, bool &hasRemovals);

    /// Appends and syncs, or leaves the journal as it was and says why. `clips` then refer to the records in it.
    std::optional<QString> append(const QByteArray &base, const Lines &lines, StoredClips &clips);

    bool exists() const { return static_cast<bool>(m_file); }
    /// False once somebody else took the file away.
    bool isLinked() const;
    qint64 size() const { return m_size; }
    /// Forgets and deletes it. True when there is none afterwards.
    bool remove();
    /// Forgets it and keeps under another name what no list has taken from it: all of a foreign file, or what stands
    /// from the damage on.
    bool setAside();

private:
    State replayLines(class ClipWindow &window, StoredClips &clips, bool &hasRemovals);
    bool replayLine(QByteArrayView line, class ClipParser &parser, StoredClips &clips, bool &hasRemovals) const;
    bool openForWriting();
    bool keepRest() const;

    QString m_path;
    std::shared_ptr<const FileDescriptor> m_file;
    bool m_isWritable = false;
    qint64 m_size = 0; ///< up to here every line is good
};

} // namespace ostrelle
