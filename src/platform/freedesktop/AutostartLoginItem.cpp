#include "platform/freedesktop/AutostartLoginItem.h"

#include <utility>

namespace ostrelle {

AutostartLoginItem::AutostartLoginItem(AutostartEntry entry, QObject *parent)
    : LoginItem(parent)
    , m_entry(std::move(entry))
{
}

void AutostartLoginItem::setRegistered(bool isRegistered, QObject *, Answer answer)
{
    const QString problem = isRegistered ? m_entry.enable() : m_entry.remove();
    answer(problem);
    Q_EMIT statusChanged();
}

} // namespace ostrelle
