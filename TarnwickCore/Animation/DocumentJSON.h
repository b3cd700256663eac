// Reads documents of settings and keys from JSON (RFC 8259), with errors that name the place.
#pragma once

#include "TarnwickCore/Animation/DocumentError.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tarnwick {

// The JSON value of the whole `text`. Throws DocumentError with line and column.
nlohmann::json parsedDocument(std::string_view text);

// In the functions below `where` begins the sentence of the error: "The document".

// The member `name`. Throws DocumentError if `object` is not an object or lacks it.
const nlohmann::json& requiredMember(const nlohmann::json& object, const char* name,
                                     const std::string& where);

// The member as a number. Throws DocumentError.
double requiredNumber(const nlohmann::json& object, const char* name, const std::string& where);

// The number rounded to single precision. `what` names it in the error. Throws DocumentError if it
// is not a number or exceeds the greatest float.
float singleOf(const nlohmann::json& value, const std::string& what);

} // namespace tarnwick
