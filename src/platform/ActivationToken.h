#pragma once

#include <QString>

namespace ostrelle {

/// Permission to take the keyboard, carried opaquely from a key press, a click or a second start to PanelHost.
struct ActivationToken
{
    QString value;
};

} // namespace ostrelle
