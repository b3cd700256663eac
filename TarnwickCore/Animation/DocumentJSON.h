// Reading documents of settings and keys from JSON (RFC 8259), with errors that say where.
#pragma once

#include "TarnwickCore/Animation/DocumentError.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tarnwick {

// The value that the whole of `text` spells. Throws DocumentError, which names line and column.
nlohmann::json parsedDocument(std::string_view text);

// In the functions below `where` begins the sentence of the error: "The document".

// The member of that name. Throws DocumentError where `object` is no object or lacks it.
const nlohmann::json& requiredMember(const nlohmann::json& object, const char* name,
                                     const std::string& where);

// The member as a number. Throws DocumentError.
double requiredNumber(const nlohmann::json& object, const char* name, const std::string& where);

// The number rounded to single precision; `what` is what to name it by. Throws DocumentError where
// it is no number or beyond the greatest float.
float singleOf(const nlohmann::json& value, const std::string& what);

} // namespace tarnwick
