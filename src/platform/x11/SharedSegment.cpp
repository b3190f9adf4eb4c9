#include "platform/x11/SharedSegment.h"

#include "platform/x11/XcbReply.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>

namespace ostrelle {

SharedSegment::SharedSegment(xcb_connection_t *connection, std::size_t size)
    : m_connection(connection)
{
    const auto *extension = xcb_get_extension_data(connection, &xcb_shm_id);
    const int id = extension && extension->present ? shmget(IPC_PRIVATE, size, IPC_CREAT | 0600) : -1;
    if (id < 0) {
        return;
    }
    void *address = shmat(id, nullptr, 0);
    if (address != reinterpret_cast<void *>(-1)) {
        m_address = address;
        m_segment = xcb_generate_id(connection);
        const auto cookie = xcb_shm_attach_checked(connection, m_segment, static_cast<std::uint32_t>(id), 0);
        m_isAttached = !XcbReply<xcb_generic_error_t>(xcb_request_check(connection, cookie));
    }
    shmctl(id, IPC_RMID, nullptr); // goes with its last user, also when this process is killed
}

SharedSegment::~SharedSegment()
{
    if (m_isAttached) {
        xcb_shm_detach(m_connection, m_segment);
    }
    if (m_address) {
        shmdt(m_address);
    }
}

} // namespace ostrelle
