#include "platform/Screens.h"

namespace ostrelle {

std::optional<Screen> Screens::named(const QString &name) const
{
    const QList<Screen> screens = all();
    for (const Screen &screen : screens) {
        if (screen.name == name) {
            return screen;
        }
    }
    return std::nullopt;
}

} // namespace ostrelle
