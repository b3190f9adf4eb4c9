#pragma once

#include <utility>

namespace ostrelle {

/// Creates a QObject owned by `parent` and returns it as a reference: the one place where `new` stands.
template <typename T, typename Parent, typename... Arguments>
T &makeChild(Parent *parent, Arguments &&...arguments)
{
    return *new T(std::forward<Arguments>(arguments)..., parent);
}

} // namespace ostrelle
