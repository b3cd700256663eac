// JSON (RFC 8259) that came from somebody else.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// Arrays and objects within each other, at most. Documents of any service have a handful.
inline constexpr int deepestOutsideJSON = 64;

// The object that the whole of `bytes` spells; of members with one name the last counts. Nothing
// when they spell something else, are not UTF-8, have a NUL, or go deeper than that. Any bytes are
// taken; needs no more stack for deep ones.
std::optional<nlohmann::json> objectOf(std::string_view bytes);

// The member; null also where there is none.
const nlohmann::json& memberOf(const nlohmann::json& object, const char* name);
// Nothing for a member that is missing or no text.
std::optional<std::string> textOf(const nlohmann::json& object, const char* name);

} // namespace tarnwick
