#include "records/ClipWindow.h"

#include "records/ClipParser.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace ostrelle {
namespace {

// Several records with an image of usual size.
constexpr qsizetype kWindowSize = 4 * 1024 * 1024;

} // namespace

ClipWindow::ClipWindow(const FileDescriptor &file)
    : m_file(file)
    , m_buffer(kWindowSize, Qt::Uninitialized)
{
}

void ClipWindow::advance(qsizetype length)
{
    m_begin += length;
    m_offset += length;
}

bool ClipWindow::more()
{
    const qsizetype kept = m_end - m_begin;
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.constData() + m_begin, static_cast<std::size_t>(kept));
        m_begin = 0;
        m_end = kept;
    } else if (kept + ClipParser::kPadding == m_buffer.size()) {
        m_buffer.resize(m_buffer.size() * 2);
    }
    const qsizetype room = m_buffer.size() - ClipParser::kPadding - kept;
    ssize_t got = 0;
    do {
        got = ::pread(m_file.get(), m_buffer.data() + kept, static_cast<std::size_t>(room), m_offset + kept);
    } while (got < 0 && errno == EINTR);
    m_hasFailed = got < 0;
    if (got <= 0)
        return false;
    m_end += got;
    return true;
}

} // namespace ostrelle
