#pragma once

#include <QtGlobal>

#include <cstddef>

#include <xcb/xcb.h>

namespace ostrelle {

/// Memory shared with the X server (MIT-SHM); only with a local one. Freed with this object, by the server with its
/// connection, also when this process is killed.
class SharedSegment
{
public:
    SharedSegment(xcb_connection_t *connection, std::size_t size);
    ~SharedSegment();
    SharedSegment(const SharedSegment &) = delete;
    SharedSegment &operator=(const SharedSegment &) = delete;

    /// False when the server is a remote one, or cannot share memory: nothing else may be used then.
    bool isAttached() const { return m_isAttached; }
    std::uint32_t id() const { return m_segment; }
    uchar *bytes() { return static_cast<uchar *>(m_address); }
    const uchar *bytes() const { return static_cast<const uchar *>(m_address); }

private:
    xcb_connection_t *m_connection;
    void *m_address = nullptr;
    std::uint32_t m_segment = 0;
    bool m_isAttached = false;
};

} // namespace ostrelle
