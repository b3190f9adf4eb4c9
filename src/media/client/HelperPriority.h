#pragma once

namespace ostrelle {

enum class HelperPriority {
    Usual,
    Background, ///< gives way to whatever else wants to compute, first of all to the program itself
};

} // namespace ostrelle
