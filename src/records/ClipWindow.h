#pragma once

#include "foundation/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>

namespace ostrelle {

/// The part of a file that is being parsed, in one buffer that is used again and again. (Mapping the file was measured:
/// the page faults alone take two to four times as long as these reads.) ClipParser::kPadding readable bytes follow.
class ClipWindow
{
public:
    explicit ClipWindow(const FileDescriptor &file);

    /// From the current place on, as far as it is in memory. Valid until more().
    QByteArrayView bytes() const { return {m_buffer.constData() + m_begin, m_end - m_begin}; }
    /// Of bytes() in the file.
    qint64 offset() const { return m_offset; }
    void advance(qsizetype length);
    /// Reads on; false at the end of the file or when it cannot be read.
    bool more();
    bool hasFailed() const { return m_hasFailed; }

private:
    const FileDescriptor &m_file;
    QByteArray m_buffer;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    qint64 m_offset = 0;
    bool m_hasFailed = false;
};

} // namespace ostrelle
