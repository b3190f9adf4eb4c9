#include "media_helper/Decoders.h"
#include "media_helper/MediaInput.h"
#include "media_helper/PictureBuilder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace ostrelle {
namespace {

struct FreeScaler
{
    void operator()(SwsContext *scaler) const { sws_freeContext(scaler); }
};

/// Where a video is looked at, in parts of its length, until a picture is not black.
constexpr std::array kPlaces{0.1, 0.3, 0.5, 0.7, 0.0};
/// And how many pictures from its begin where its length is not known, every so many.
constexpr int kPicturesFromBegin = 120;
constexpr int kPictureStep = 12;
/// Mean brightness from 0 to 255 below which a picture says nothing.
constexpr int kDark = 24;

/// `frame` in another size and format; false when FFmpeg cannot.
bool scaled(const AVFrame &frame, PixelSize size, AVPixelFormat format, std::vector<std::uint8_t> &bytes)
{
    const std::unique_ptr<SwsContext, FreeScaler> scaler(
        sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), size.width, size.height,
                       format, SWS_AREA, nullptr, nullptr, nullptr));
    if (!scaler)
        return false;
    const int channels = format == AV_PIX_FMT_GRAY8 ? 1 : 4;
    // FFmpeg writes whole vectors at a time, also beyond the end of a row.
    constexpr std::size_t kSlack = 64;
    const int stride = size.width * channels;
    bytes.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height) + kSlack);
    std::uint8_t *const rows[4] = {bytes.data(), nullptr, nullptr, nullptr};
    const int strides[4] = {stride, 0, 0, 0};
    return sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides) == size.height;
}

int brightness(const AVFrame &frame)
{
    constexpr PixelSize kSample{32, 32};
    constexpr std::size_t kPixels = 32 * 32;
    std::vector<std::uint8_t> gray;
    if (!scaled(frame, kSample, AV_PIX_FMT_GRAY8, gray))
        return 0;
    return static_cast<int>(std::accumulate(gray.begin(), gray.begin() + kPixels, std::size_t(0)) / kPixels);
}

/// Keeps the brightest picture until one is bright enough.
class BestFrame
{
public:
    bool isBrightEnough() const { return m_brightness >= kDark; }
    void offer(MediaFrame frame)
    {
        const int value = frame ? brightness(*frame) : -1;
        if (value > m_brightness) {
            m_frame = std::move(frame);
            m_brightness = value;
        }
    }
    MediaFrame take() { return std::move(m_frame); }

private:
    MediaFrame m_frame;
    int m_brightness = -1;
};

MediaFrame chosenFrame(MediaInput &input)
{
    if (input.isCover())
        return input.nextFrame();
    BestFrame best;
    for (std::size_t i = 0; i < kPlaces.size() && input.duration() > 0 && !best.isBrightEnough(); ++i) {
        if (input.seek(static_cast<std::int64_t>(static_cast<double>(input.duration()) * kPlaces[i])))
            best.offer(input.nextFrame());
    }
    for (int i = 0; i < kPicturesFromBegin && !best.isBrightEnough(); ++i) {
        MediaFrame frame = input.nextFrame();
        if (!frame)
            break;
        if (i % kPictureStep == 0)
            best.offer(std::move(frame));
    }
    return best.take();
}

int orientationOf(const AVStream &stream)
{
    const std::uint8_t *matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (!matrix)
        return 1;
    // The angle is counted against the clock.
    const double turned = -av_display_rotation_get(reinterpret_cast<const std::int32_t *>(matrix));
    switch ((static_cast<int>(std::lround(turned / 90)) % 4 + 4) % 4) {
    case 1:
        return 6;
    case 2:
        return 3;
    case 3:
        return 8;
    default:
        return 1;
    }
}

/// As it is shown: pixels of video need not be square.
PixelSize shownSize(const AVFrame &frame, const AVStream &stream)
{
    AVRational aspect = frame.sample_aspect_ratio;
    if (aspect.num <= 0 || aspect.den <= 0)
        aspect = stream.sample_aspect_ratio;
    const double ratio = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1;
    if (ratio > 4 || ratio < 0.25)
        return {frame.width, frame.height};
    return {std::max(1, static_cast<int>(std::lround(frame.width * ratio))), frame.height};
}

HelperStatus deliver(const AVFrame &frame, const AVStream &stream, PictureBuilder &builder)
{
    PictureFacts facts;
    facts.full = shownSize(frame, stream);
    const double scale = builder.shrinkScale(facts.full);
    const auto shrunkLength = [scale](int length) {
        return std::max(1, static_cast<int>(std::lround(length * scale)));
    };
    facts.decoded = {shrunkLength(facts.full.width), shrunkLength(facts.full.height)};
    facts.layout = PixelLayout::Rgba;
    facts.orientation = orientationOf(stream);
    if (const AVFrameSideData *icc = av_frame_get_side_data(&frame, AV_FRAME_DATA_ICC_PROFILE))
        facts.icc.assign(icc->data, icc->data + icc->size);
    const PixelSize size = facts.decoded;
    std::vector<std::uint8_t> rgba;
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (!scaled(frame, size, AV_PIX_FMT_RGBA, rgba))
        return HelperStatus::Broken;
    for (int row = 0; row < size.height; ++row)
        builder.addRow(rgba.data() + 4 * static_cast<std::size_t>(row) * static_cast<std::size_t>(size.width));
    return HelperStatus::Done;
}

HelperStatus decodeFormat(ByteSource &source, PictureBuilder &builder, const char *format)
{
    const std::unique_ptr<MediaInput> input = MediaInput::open(source, format);
    if (!input)
        return HelperStatus::NoPicture;
    const MediaFrame frame = chosenFrame(*input);
    return frame ? deliver(*frame, input->stream(), builder) : HelperStatus::Broken;
}

} // namespace

HelperStatus decodeMedia(ByteSource &source, PictureBuilder &builder)
{
    return decodeFormat(source, builder, nullptr);
}

HelperStatus decodePsdOfAnyKind(ByteSource &source, PictureBuilder &builder)
{
    return decodeFormat(source, builder, "psd_pipe");
}

HelperStatus decodeBmpOfAnyKind(ByteSource &source, PictureBuilder &builder)
{
    return decodeFormat(source, builder, "bmp_pipe");
}

} // namespace ostrelle
