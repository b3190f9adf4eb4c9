#include "platform/KeyboardLayout.h"

#include "platform/x11/X11KeyboardMap.h"

namespace ostrelle {

QMap<quint32, QString> KeyboardLayout::currentKeyNames()
{
    return X11KeyboardMap::namesWithoutPlatform();
}

} // namespace ostrelle
