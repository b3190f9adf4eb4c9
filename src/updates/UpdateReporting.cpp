#include "updates/UpdateReporting.h"

#include "records/UpdateReport.h"

namespace ostrelle {

UpdateReport reportOf(const UpdateState &state)
{
    using namespace updateStates;
    if (const auto *available = std::get_if<Available>(&state)) {
        const UpdateRelease &release = available->release;
        return {.state = QStringLiteral("available"),
                .version = release.version,
                .url = QString::fromLatin1(release.url.toEncoded()),
                .notes = release.notes,
                .message = {}};
    }
    if (const auto *failed = std::get_if<Failed>(&state))
        return {.state = QStringLiteral("failed"), .version = {}, .url = {}, .notes = {}, .message = failed->message};
    return {.state = QStringLiteral("current"), .version = {}, .url = {}, .notes = {}, .message = {}};
}

} // namespace ostrelle
