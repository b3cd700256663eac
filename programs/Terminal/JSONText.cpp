#include "programs/Terminal/JSONText.h"

#include "TarnwickCore/Text/TerminalText.h"

#include <nlohmann/json.hpp>

namespace tarnwick {

std::string jsonText(const nlohmann::ordered_json& document, JSONForm form) {
    return terminalJSON(document.dump(form == JSONForm::indented ? 2 : -1, ' ', false,
                                      nlohmann::ordered_json::error_handler_t::replace));
}

} // namespace tarnwick
