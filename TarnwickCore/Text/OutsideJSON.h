// JSON (RFC 8259) from outside.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The maximum depth of nested arrays and objects. The documents of the service have fewer than 8.
inline constexpr int deepestOutsideJSON = 64;

// The object that the whole of `bytes` denotes. If several members have the same name, the last one
// is used. Nothing if `bytes` is not an object, is not UTF-8, has a NUL, or is nested deeper than
// the maximum. Accepts any bytes; the stack does not grow with the depth.
std::optional<nlohmann::json> objectOf(std::string_view bytes);

// The member; the JSON value null if the member is missing.
const nlohmann::json& memberOf(const nlohmann::json& object, const char* name);
// Nothing if the member is missing or is not text.
std::optional<std::string> textOf(const nlohmann::json& object, const char* name);

} // namespace tarnwick
