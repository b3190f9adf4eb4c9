#include "media_helper/ImageCommand.h"

#include "media_helper/ByteSource.h"
#include "media_helper/FactsJson.h"
#include "media_helper/ProfileName.h"
#include "media_helper/SourceViews.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ostrelle {
namespace {

constexpr double kMostDotsPerInch = 1e9;

CommandAnswer failed(HelperStatus status)
{
    CommandAnswer answer;
    answer.header.status = status;
    return answer;
}

bool isPossible(const ImageFacts &facts)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    return facts.width >= 1 && facts.height >= 1 && facts.width <= kMost && facts.height <= kMost;
}

FactFields fieldsOf(const ImageFacts &facts, std::uint64_t byteSize)
{
    FactFields fields{{"pixelWidth", facts.width},
                      {"pixelHeight", facts.height},
                      {"byteSize", static_cast<std::int64_t>(byteSize)},
                      {"format", std::string(facts.format)},
                      {"hasAlpha", facts.hasAlpha}};
    std::string colors = profileName(facts.icc);
    if (colors.empty())
        colors = facts.model;
    if (!colors.empty())
        fields.emplace_back("colorSpace", colors);
    if (facts.bitDepth)
        fields.emplace_back("bitDepth", std::int64_t(*facts.bitDepth));
    if (facts.dpi && *facts.dpi >= 0 && *facts.dpi < kMostDotsPerInch)
        fields.emplace_back("dpi", static_cast<std::int64_t>(std::round(*facts.dpi)));
    return fields;
}

} // namespace

CommandAnswer answerImageInfo(ByteSource &source, const HelperRequest &request, const ImageFactsTable &table)
{
    MeteredSource metered(source, table.mostRead);
    std::array<std::uint8_t, kSniffedBytes> head{};
    const FileKind kind = sniffedKind({head.data(), metered.readAt(0, head)}, request.extension.data());
    const bool mayDecline = table.others == UnknownKinds::Decline;
    const auto row = std::find_if(table.rows.begin(), table.rows.end(),
                                  [kind](const ImageFactsRow &candidate) { return candidate.kind == kind; });
    if (row == table.rows.end()) {
        const bool isForOthers = mayDecline && kind != FileKind::Unknown;
        return failed(isForOthers ? HelperStatus::Declined : HelperStatus::Unsupported);
    }
    const auto facts = row->facts(metered);
    if (!facts)
        return failed(mayDecline && row->isShared ? HelperStatus::Declined : HelperStatus::Broken);
    if (!isPossible(*facts))
        return failed(HelperStatus::Broken);
    CommandAnswer answer;
    answer.payload = factsJson(fieldsOf(*facts, source.size()));
    return answer;
}

} // namespace ostrelle
