#include "media_player/SoundOutput.h"

#include "media_helper/AudioStream.h"
#include "media_player/SoundServer.h"

#include <pulse/channelmap.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/sample.h>
#include <pulse/stream.h>
#include <pulse/timeval.h>

#include <array>
#include <utility>

namespace ostrelle {
namespace {

/// What the server holds ahead: enough for a busy machine, and it is thrown away when playing stops.
constexpr int kAheadMilliseconds = 500;
/// It begins with this much, and asks for no less.
constexpr int kPortionMilliseconds = 100;

/// The speakers of AudioFormat, from its lowest bit.
constexpr std::array kPositions{
    PA_CHANNEL_POSITION_FRONT_LEFT,
    PA_CHANNEL_POSITION_FRONT_RIGHT,
    PA_CHANNEL_POSITION_FRONT_CENTER,
    PA_CHANNEL_POSITION_LFE,
    PA_CHANNEL_POSITION_REAR_LEFT,
    PA_CHANNEL_POSITION_REAR_RIGHT,
    PA_CHANNEL_POSITION_FRONT_LEFT_OF_CENTER,
    PA_CHANNEL_POSITION_FRONT_RIGHT_OF_CENTER,
    PA_CHANNEL_POSITION_REAR_CENTER,
    PA_CHANNEL_POSITION_SIDE_LEFT,
    PA_CHANNEL_POSITION_SIDE_RIGHT,
    PA_CHANNEL_POSITION_TOP_CENTER,
    PA_CHANNEL_POSITION_TOP_FRONT_LEFT,
    PA_CHANNEL_POSITION_TOP_FRONT_CENTER,
    PA_CHANNEL_POSITION_TOP_FRONT_RIGHT,
    PA_CHANNEL_POSITION_TOP_REAR_LEFT,
    PA_CHANNEL_POSITION_TOP_REAR_CENTER,
    PA_CHANNEL_POSITION_TOP_REAR_RIGHT,
};

pa_channel_map mapOf(const AudioFormat &format)
{
    pa_channel_map map{};
    const auto channels = static_cast<unsigned>(format.channels);
    if (channels == 1)
        return *pa_channel_map_init_mono(&map);
    for (std::size_t bit = 0; bit < kPositions.size(); ++bit) {
        if ((format.speakers >> bit & 1U) != 0 && map.channels < channels)
            map.map[map.channels++] = kPositions[bit];
    }
    return map.channels == channels ? map : *pa_channel_map_init_extend(&map, channels, PA_CHANNEL_MAP_WAVEEX);
}

std::uint32_t bytesOf(int milliseconds, const pa_sample_spec &spec)
{
    return static_cast<std::uint32_t>(pa_usec_to_bytes(static_cast<pa_usec_t>(milliseconds) * PA_USEC_PER_MSEC, &spec));
}

struct FreeProperties
{
    void operator()(pa_proplist *properties) const { pa_proplist_free(properties); }
};

void forget(pa_operation *operation)
{
    if (operation)
        pa_operation_unref(operation);
}

} // namespace

std::unique_ptr<SoundOutput> SoundOutput::create(SoundServer &server, const AudioFormat &format)
{
    const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(format.sampleRate),
                              static_cast<std::uint8_t>(format.channels)};
    const pa_channel_map map = mapOf(format);
    const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "music");
    pa_stream *stream = pa_stream_new_with_proplist(&server.context(), "Preview", &spec, &map, properties.get());
    if (!stream)
        return nullptr;
    auto output = std::make_unique<SoundOutput>(OnlyCreate{}, server, stream);
    pa_buffer_attr sizes{};
    sizes.maxlength = static_cast<std::uint32_t>(-1);
    sizes.tlength = bytesOf(kAheadMilliseconds, spec);
    sizes.prebuf = bytesOf(kPortionMilliseconds, spec);
    sizes.minreq = bytesOf(kPortionMilliseconds, spec);
    const bool isBegun = pa_stream_connect_playback(stream, nullptr, &sizes, PA_STREAM_NOFLAGS, nullptr, nullptr) >= 0;
    return isBegun ? std::move(output) : nullptr;
}

SoundOutput::SoundOutput(OnlyCreate, SoundServer &server, pa_stream *stream)
    : m_server(server)
    , m_stream(stream)
{
}

SoundOutput::~SoundOutput()
{
    cancelDrain();
    pa_stream_disconnect(m_stream);
    pa_stream_unref(m_stream);
}

bool SoundOutput::isLost() const
{
    return !m_server.isConnected() || !PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream));
}

std::size_t SoundOutput::wantedSamples() const
{
    if (pa_stream_get_state(m_stream) != PA_STREAM_READY)
        return 0;
    const std::size_t bytes = pa_stream_writable_size(m_stream);
    return bytes == static_cast<std::size_t>(-1) ? 0 : bytes / sizeof(float);
}

bool SoundOutput::write(std::span<const float> samples)
{
    return pa_stream_write(m_stream, samples.data(), samples.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE) >= 0;
}

void SoundOutput::discard()
{
    cancelDrain();
    m_hasDelay = false;
    forget(pa_stream_flush(m_stream, nullptr, nullptr));
}

void SoundOutput::drain()
{
    m_drain = pa_stream_drain(
        m_stream, [](pa_stream *, int, void *self) { static_cast<SoundOutput *>(self)->m_isDrained = true; }, this);
}

void SoundOutput::cancelDrain()
{
    if (m_drain) {
        pa_operation_cancel(m_drain);
        forget(m_drain);
    }
    m_drain = nullptr;
    m_isDrained = false;
}

void SoundOutput::askDelay()
{
    m_hasDelay = false;
    forget(pa_stream_update_timing_info(
        m_stream, [](pa_stream *, int success, void *self) { static_cast<SoundOutput *>(self)->m_hasDelay = success; },
        this));
}

std::optional<std::int64_t> SoundOutput::takeDelay()
{
    if (!std::exchange(m_hasDelay, false))
        return std::nullopt;
    pa_usec_t delay = 0;
    int isNegative = 0;
    if (pa_stream_get_latency(m_stream, &delay, &isNegative) < 0)
        return std::nullopt;
    return isNegative != 0 ? 0 : static_cast<std::int64_t>(delay);
}

} // namespace ostrelle
