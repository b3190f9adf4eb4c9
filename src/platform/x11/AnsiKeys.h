#pragma once

#include <QtGlobal>

#include <span>

namespace ostrelle {

/// A place on the board: the virtual key that an ANSI board has there, and its name in the X Keyboard Extension
/// ("AD01" is the first letter of the upper row). Some virtual keys have two places.
struct AnsiKey
{
    quint32 keyCode;
    const char *xkbName;
};

std::span<const AnsiKey> allAnsiKeys();

} // namespace ostrelle
