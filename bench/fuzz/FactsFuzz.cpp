// What a file may do to the helper that reads its headers, and what a helper may say to the program: any bytes are
// both. Built and run as CONTRIBUTING.md says.

#include "media_client/AudioInfo.h"
#include "media_client/ImageInfo.h"
#include "media_helper/ByteSource.h"
#include "media_helper/FactsTables.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <string_view>

namespace {

using namespace ostrelle;

QByteArray bytesOf(std::span<const std::uint8_t> bytes)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
}

/// Ends the process, which is how the fuzzer hears of a fault.
void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// What is believed has to be possible.
void readAnswer(const QByteArray &json)
{
    static const QString path = QStringLiteral("/a/file.ending");
    if (const auto image = imageInfoFromJson(json, path))
        require(image->pixelWidth >= 1 && image->pixelHeight >= 1);
    if (const auto audio = audioInfoFromJson(json, path))
        require(audio->duration > 0 || audio->sampleRate);
    const auto tempo = tempoFromJson(json);
    require(!tempo || (*tempo >= 60 && *tempo <= 200));
}

/// The helper says of a sound nothing that the file could not hold.
void readSound(ByteSource &source)
{
    const CommandAnswer answer = answerAudioInfo(source, kAudioFacts);
    const auto info = audioInfoFromJson(bytesOf(answer.payload), QStringLiteral("/a/file.ending"));
    require(!info || info->duration <= double(source.size()));
}

void readPicture(ByteSource &source, std::string_view ending)
{
    HelperRequest request;
    std::copy(ending.begin(), ending.end(), request.extension.begin());
    const CommandAnswer answer = answerImageInfo(source, request, kImageFacts);
    // What the helper takes for an answer is one.
    require(answer.payload.empty() || imageInfoFromJson(bytesOf(answer.payload), QStringLiteral("/a/file.ending")));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::span bytes(data, size);
    MemorySource source(bytes);
    readPicture(source, "tga");
    readSound(source);
    readAnswer(bytesOf(bytes));
    return 0;
}
