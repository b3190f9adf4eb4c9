#include "media_helper/FactsJson.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace ostrelle {

std::vector<std::uint8_t> factsJson(const FactFields &fields)
{
    nlohmann::json object = nlohmann::json::object();
    for (const auto &[key, value] : fields) {
        const double *const number = std::get_if<double>(&value);
        if (!number || std::isfinite(*number))
            std::visit([&object, &name = key](const auto &plain) { object[name] = plain; }, value);
    }
    const std::string text = object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return {text.begin(), text.end()};
}

} // namespace ostrelle
