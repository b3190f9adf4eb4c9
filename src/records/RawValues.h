#pragma once

#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>

namespace ostrelle {

/// The value whose rawValue() is exactly `raw`, or nothing.
template <typename Enumeration, std::size_t Count>
std::optional<Enumeration> findByRawValue(const std::array<Enumeration, Count> &all, QStringView raw)
{
    for (const Enumeration value : all) {
        if (rawValue(value) == raw)
            return value;
    }
    return std::nullopt;
}

} // namespace ostrelle
