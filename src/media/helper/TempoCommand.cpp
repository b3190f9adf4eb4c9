#include "media_helper/TempoCommand.h"

#include "media_helper/ByteSource.h"
#include "media_helper/MonoSamples.h"
#include "tempo/TempoEstimate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string>

namespace ostrelle {
namespace {

std::string jsonOf(std::optional<double> bpm)
{
    if (!bpm)
        return "{}";
    // Shortest form, with a point in every language.
    std::array<char, 32> number{};
    const auto [end, error] = std::to_chars(number.data(), number.data() + number.size(), *bpm);
    return R"({"bpm":)" + std::string(number.data(), end) + '}';
}

} // namespace

CommandAnswer answerTempo(ByteSource &source, const AudioTable &table)
{
    std::array<std::uint8_t, kSniffedBytes> head{};
    const FileKind kind = sniffedKind({head.data(), source.readAt(0, head)});
    const auto row = std::find_if(table.rows.begin(), table.rows.end(),
                                  [kind](const AudioRow &candidate) { return candidate.kind == kind; });
    const std::unique_ptr<AudioStream> stream = row != table.rows.end() ? row->open(source) : nullptr;
    CommandAnswer answer;
    if (!stream) {
        const bool mayDecline = table.others == UnknownKinds::Decline;
        answer.header.status = mayDecline ? HelperStatus::Declined : HelperStatus::Unsupported;
        return answer;
    }
    const std::optional<std::vector<float>> samples = monoSamples(*stream);
    const std::string json = jsonOf(samples ? estimateTempo(*samples) : std::nullopt);
    answer.payload.assign(json.begin(), json.end());
    return answer;
}

} // namespace ostrelle
