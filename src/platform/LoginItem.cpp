#include "platform/LoginItem.h"

#include "platform/freedesktop/AutostartLoginItem.h"
#include "platform/freedesktop/PortalLoginItem.h"

namespace ostrelle {

std::unique_ptr<LoginItem> LoginItem::create(const QString &applicationId, const QString &command)
{
    const AutostartEntry entry(applicationId, command);
    if (PortalLoginItem::isNeeded()) {
        return std::make_unique<PortalLoginItem>(entry, QStringList{command});
    }
    return std::make_unique<AutostartLoginItem>(entry);
}

} // namespace ostrelle
