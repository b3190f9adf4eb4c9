#include "media_helper/AudioCommand.h"

#include "media_helper/ByteSource.h"
#include "media_helper/FactsJson.h"
#include "media_helper/Id3Tag.h"
#include "media_helper/SourceViews.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kMostLeadingTags = 16;
/// No coding of sound needs less: a duration that comes to less is a lie, or a slip.
constexpr double kLeastBitsPerSecond = 10;

FileKind kindAt(ByteSource &source, std::uint64_t offset)
{
    std::array<std::uint8_t, kSniffedBytes> head{};
    return sniffedKind({head.data(), source.readAt(offset, head)});
}

/// The file behind the ID3v2 tags that it begins with.
struct Untagged
{
    FileKind kind = FileKind::Unknown;
    std::uint64_t begin = 0;
    std::optional<double> tempo;
};

Untagged untagged(ByteSource &source)
{
    Untagged file;
    std::uint64_t size = id3TagSize(source, 0);
    for (int tags = 0; size > 0 && tags < kMostLeadingTags; ++tags) {
        if (!file.tempo)
            file.tempo = id3Tempo(source, file.begin);
        file.begin += size;
        size = id3TagSize(source, file.begin);
    }
    file.kind = kindAt(source, file.begin);
    // Between tag and sound there may be padding.
    if (file.begin > 0 && file.kind == FileKind::Unknown)
        file.kind = FileKind::Mp3;
    return file;
}

std::optional<std::int64_t> kilobits(const AudioFacts &facts, std::uint64_t byteSize)
{
    if (facts.bitRate.value_or(0) > 0)
        return static_cast<std::int64_t>(std::round(*facts.bitRate / 1000));
    // Samples that are not compressed say by themselves how many bits they take.
    if (facts.bitDepth || facts.duration <= 0)
        return std::nullopt;
    return static_cast<std::int64_t>(std::round(static_cast<double>(byteSize) * 8 / facts.duration / 1000));
}

FactFields fieldsOf(const AudioFacts &facts, std::optional<double> tempo, std::uint64_t byteSize)
{
    FactFields fields{{"byteSize", static_cast<std::int64_t>(byteSize)}, {"duration", facts.duration}};
    if (facts.sampleRate)
        fields.emplace_back("sampleRate", *facts.sampleRate);
    if (facts.bitDepth)
        fields.emplace_back("bitDepth", std::int64_t(*facts.bitDepth));
    if (facts.channels)
        fields.emplace_back("channels", std::int64_t(*facts.channels));
    if (const auto rate = kilobits(facts, byteSize))
        fields.emplace_back("bitrateKbps", *rate);
    if (tempo)
        fields.emplace_back("bpm", *tempo);
    return fields;
}

CommandAnswer failure(HelperStatus status)
{
    CommandAnswer answer;
    answer.header.status = status;
    return answer;
}

} // namespace

CommandAnswer answerAudioInfo(ByteSource &source, const AudioFactsTable &table)
{
    MeteredSource metered(source, table.mostRead);
    const Untagged file = untagged(metered);
    const bool mayDecline = table.others == UnknownKinds::Decline;
    const HelperStatus refusal = file.kind == FileKind::Unknown ? HelperStatus::Unsupported : HelperStatus::Broken;
    const auto row = std::find_if(table.rows.begin(), table.rows.end(),
                                  [&file](const AudioFactsRow &candidate) { return candidate.kind == file.kind; });
    if (row == table.rows.end())
        return failure(mayDecline ? HelperStatus::Declined : HelperStatus::Unsupported);
    PartialSource sound(metered, file.begin, metered.size());
    auto facts = row->facts(sound);
    if (!facts || metered.isExhausted())
        return failure(mayDecline ? HelperStatus::Declined : refusal);
    if (facts->duration > static_cast<double>(source.size()) * 8 / kLeastBitsPerSecond)
        facts->duration = 0;
    std::optional<double> tempo = file.tempo;
    if (!tempo && row->tempo)
        tempo = row->tempo(sound);
    CommandAnswer answer;
    answer.payload = factsJson(fieldsOf(*facts, tempo, source.size()));
    return answer;
}

} // namespace ostrelle
