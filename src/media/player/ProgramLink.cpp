#include "media_player/ProgramLink.h"

#include "media_helper/RecordSocket.h"
#include "media_player/SoundServer.h"

#include <pulse/mainloop.h>

#include <sys/socket.h>

namespace ostrelle {

ProgramLink::ProgramLink(SoundServer &server)
    : m_server(server)
{
    pa_mainloop_api *api = pa_mainloop_get_api(&server.loop());
    m_event = api->io_new(
        api, kProgramSocket, PA_IO_EVENT_INPUT,
        [](pa_mainloop_api *, pa_io_event *, int, pa_io_event_flags_t, void *self) {
            static_cast<ProgramLink *>(self)->receive();
        },
        this);
}

ProgramLink::~ProgramLink()
{
    pa_mainloop_get_api(&m_server.loop())->io_free(m_event);
}

void ProgramLink::receive()
{
    PlaybackCommand command;
    FileDescriptor file;
    const ssize_t size = receiveRecord(kProgramSocket, &command, sizeof command, file);
    if (size != static_cast<ssize_t>(sizeof command) || command.magic != kPlaybackMagic) {
        m_isClosed = true;
        // It would be told of the end for ever.
        pa_mainloop_get_api(&m_server.loop())->io_enable(m_event, PA_IO_EVENT_NULL);
        return;
    }
    if (command.order == PlaybackOrder::Play)
        m_file = std::move(file);
    else
        m_seek = command;
}

void ProgramLink::report(const PlaybackReport &report)
{
    sendRecord(kProgramSocket, &report, sizeof report);
}

void ProgramLink::reportIfHeard(const PlaybackReport &report)
{
    iovec part{const_cast<PlaybackReport *>(&report), sizeof report};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    ::sendmsg(kProgramSocket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace ostrelle
