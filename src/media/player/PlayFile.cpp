#include "media_player/PlayFile.h"

#include "media_helper/Sandbox.h"
#include "media_player/DecoderProcess.h"
#include "media_player/Player.h"
#include "media_player/ProgramLink.h"
#include "media_player/SoundOutput.h"
#include "media_player/SoundServer.h"

#include <exception>

namespace ostrelle {
namespace {

void reportEvent(PlaybackEvent event)
{
    PlaybackReport report;
    report.event = event;
    ProgramLink::report(report);
}

void reportFailure(PlaybackFailure failure)
{
    PlaybackReport report;
    report.event = PlaybackEvent::Failed;
    report.failure = failure;
    ProgramLink::report(report);
}

void reportRefusal(DecoderStatus status)
{
    if (status != DecoderStatus::Declined) {
        reportFailure(status == DecoderStatus::OutOfMemory ? PlaybackFailure::OutOfMemory
                                                           : PlaybackFailure::Unplayable);
        return;
    }
    reportEvent(PlaybackEvent::Declined);
}

/// Of the process that is connected. It decodes nothing.
bool shutIn()
{
    SandboxLimits limits;
    limits.addressSpace = std::size_t(1) << 30U;
    limits.cpuSeconds = 3600;
    limits.keepsConnections = true;
    return enterSandbox(limits);
}

void playWhatComes(SoundServer &server, DecoderProcess &decoder)
{
    ProgramLink link(server);
    FileDescriptor file;
    while (!(file = link.takeFile())) {
        if (link.isClosed())
            return;
        server.waitForEvents();
        if (!server.isConnected()) {
            reportFailure(PlaybackFailure::ServerLost);
            return;
        }
    }
    const auto opened = decoder.open(file);
    if (const auto *status = std::get_if<DecoderStatus>(&opened)) {
        reportRefusal(*status);
        return;
    }
    AudioStream &sound = *std::get<std::unique_ptr<AudioStream>>(opened);
    const std::unique_ptr<SoundOutput> output = SoundOutput::create(server, sound.format());
    if (!output) {
        reportFailure(PlaybackFailure::Unplayable);
        return;
    }
    Player(server, link, sound, *output).play();
}

} // namespace

int playFile(const AudioTable &table)
{
    if (!closeOtherDescriptors())
        return 1;
    // Before there is a connection that it would take along.
    const std::unique_ptr<DecoderProcess> decoder = DecoderProcess::start(table);
    const std::unique_ptr<SoundServer> server = SoundServer::connect();
    if (!decoder || !server) {
        reportFailure(server ? PlaybackFailure::OutOfMemory : PlaybackFailure::NoServer);
        return 0;
    }
    if (!shutIn())
        return 1;
    reportEvent(PlaybackEvent::Connected);
    try {
        playWhatComes(*server, *decoder);
    } catch (const std::exception &) {
        reportFailure(PlaybackFailure::OutOfMemory);
    }
    return 0;
}

} // namespace ostrelle
