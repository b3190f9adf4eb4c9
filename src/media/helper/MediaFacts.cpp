#include "media_helper/AudioFacts.h"
#include "media_helper/MediaContainer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdlib>
#include <string_view>

namespace ostrelle {
namespace {

constexpr int kMostChannels = 1024;

const AVStream *firstStream(const AVFormatContext &format, AVMediaType type)
{
    for (unsigned i = 0; i < format.nb_streams; ++i) {
        const bool isCover = (format.streams[i]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
        if (format.streams[i]->codecpar->codec_type == type && !isCover)
            return format.streams[i];
    }
    return nullptr;
}

bool isComplete(const AVStream *stream)
{
    const AVCodecParameters *codec = stream ? stream->codecpar : nullptr;
    return codec && codec->sample_rate > 0 && codec->ch_layout.nb_channels > 0 &&
           codec->ch_layout.nb_channels <= kMostChannels;
}

/// FFmpeg states one for compressed streams as well.
std::optional<int> bitDepthOf(const AVCodecParameters &codec)
{
    const bool isPcm = codec.codec_id >= AV_CODEC_ID_FIRST_AUDIO && codec.codec_id < AV_CODEC_ID_ADPCM_IMA_QT;
    const int exact = isPcm ? av_get_exact_bits_per_sample(codec.codec_id) : 0;
    const int stated = isPcm ? codec.bits_per_coded_sample : 0;
    return exact > 0 ? std::optional(exact) : stated > 0 ? std::optional(stated) : std::nullopt;
}

/// Some Matroska files carry it as a tag.
std::optional<double> bitRateOf(const AVStream &stream)
{
    if (stream.codecpar->bit_rate > 0)
        return static_cast<double>(stream.codecpar->bit_rate);
    const AVDictionaryEntry *tag = av_dict_get(stream.metadata, "BPS", nullptr, AV_DICT_IGNORE_SUFFIX);
    const double value = tag ? std::strtod(tag->value, nullptr) : 0;
    return value > 0 ? std::optional(value) : std::nullopt;
}

/// Whether each frame states the rate, which the container may leave out.
bool statesRateInFrames(const AVFormatContext &format, AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_AC3:
    case AV_CODEC_ID_EAC3:
    case AV_CODEC_ID_DTS:
        return true;
    case AV_CODEC_ID_MP2:
    case AV_CODEC_ID_MP3:
        // The first frames may differ from the rest. Still they tell more than the size of a film does.
        return firstStream(format, AVMEDIA_TYPE_VIDEO) != nullptr;
    default:
        return false;
    }
}

double secondsOf(const AVFormatContext &format, const AVStream *stream)
{
    if (format.duration > 0)
        return static_cast<double>(format.duration) / AV_TIME_BASE;
    return stream && stream->duration > 0 ? static_cast<double>(stream->duration) * av_q2d(stream->time_base) : 0;
}

/// By the headers of container and streams, as far as they can be told.
bool isTold(const AVFormatContext &format, const AVStream *stream)
{
    return isComplete(stream) && secondsOf(format, stream) > 0 &&
           (bitRateOf(*stream) || !statesRateInFrames(format, stream->codecpar->codec_id));
}

bool isSingleBit(AVCodecID codec)
{
    return codec >= AV_CODEC_ID_DSD_LSBF && codec <= AV_CODEC_ID_DSD_MSBF_PLANAR;
}

/// Notes that FFmpeg has a library play: what it says of the samples is about those that come out.
bool isPlayedFromNotes(const AVFormatContext &format)
{
    const std::string_view name = format.iformat->name;
    return name == "libopenmpt" || name == "libmodplug" || name == "libgme";
}

void addStream(AudioFacts &facts, const AVStream &stream)
{
    const AVCodecParameters &codec = *stream.codecpar;
    facts.sampleRate = codec.sample_rate;
    facts.channels = codec.ch_layout.nb_channels;
    facts.bitDepth = bitDepthOf(codec);
    // FFmpeg counts eight samples of one bit as one.
    if (isSingleBit(codec.codec_id)) {
        facts.sampleRate = 8.0 * codec.sample_rate;
        facts.bitDepth = 1;
    }
    facts.bitRate = bitRateOf(stream);
    if (!facts.bitRate && facts.bitDepth)
        facts.bitRate = *facts.sampleRate * *facts.channels * *facts.bitDepth;
}

} // namespace

std::optional<AudioFacts> readMediaFacts(ByteSource &source)
{
    MediaContainer container(source);
    if (!container.open(nullptr))
        return std::nullopt;
    const AVFormatContext &format = container.format();
    // Most headers tell everything; looking into the streams takes much longer.
    const AVStream *stream = firstStream(format, AVMEDIA_TYPE_AUDIO);
    if (!isTold(format, stream) && container.probeStreams())
        stream = firstStream(format, AVMEDIA_TYPE_AUDIO);
    AudioFacts facts;
    if (isComplete(stream))
        addStream(facts, *stream);
    if (isPlayedFromNotes(format)) {
        facts.bitDepth.reset();
        facts.bitRate.reset();
    }
    // A film without sound has a length at least.
    if (stream || firstStream(format, AVMEDIA_TYPE_VIDEO))
        facts.duration = secondsOf(format, stream);
    return facts.sampleRate || facts.duration > 0 ? std::optional(facts) : std::nullopt;
}

} // namespace ostrelle
