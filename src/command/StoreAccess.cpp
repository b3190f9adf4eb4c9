#include "command/StoreAccess.h"

#include "foundation/AppPaths.h"

#include <QLoggingCategory>

#include <poll.h>

namespace ostrelle {

namespace {

constexpr int kRetryMilliseconds = 5;
constexpr int kRetries = 2000;

} // namespace

StoreAccess accessStores()
{
    for (int attempt = 0; attempt < kRetries; ++attempt) {
        if (auto client = ControlClient::connect())
            return std::move(*client);
        DataFolderLock::Failure failure{};
        if (auto lock = DataFolderLock::tryTake(AppPaths::support(), &failure))
            return std::move(*lock);
        if (failure == DataFolderLock::Failure::Unavailable)
            return QStringLiteral("cannot write to %1").arg(AppPaths::support());
        // The holder is about to listen, or about to be done.
        ::poll(nullptr, 0, kRetryMilliseconds);
    }
    return QStringLiteral("another program holds %1 and does not answer").arg(AppPaths::support());
}

void muteStoreWarnings()
{
    QLoggingCategory::setFilterRules(QStringLiteral("ostrelle.*.warning=false"));
}

} // namespace ostrelle
