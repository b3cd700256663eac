// Documents for programs, which a terminal may show.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace tarnwick {

enum class JSONForm { indented, oneLine };

// The document, without a line feed at its end. Bytes that are not UTF-8 become U+FFFD; control
// characters and marks of writing direction are escaped.
std::string jsonText(const nlohmann::ordered_json& document, JSONForm form = JSONForm::indented);

} // namespace tarnwick
