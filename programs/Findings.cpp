#include "programs/Findings.h"

#include <nlohmann/json.hpp>

namespace tarnwick {

using nlohmann::ordered_json;

std::string findingsText(std::string_view episodePath, std::span<const Diagnostic> findings) {
    std::string text;
    for (const Diagnostic& finding : findings)
        text.append(episodePath)
            .append(":" + std::to_string(finding.line) + ":" + std::to_string(finding.column) +
                    ": ")
            .append(rawValue(finding.severity))
            .append(": " + finding.message + "\n");
    return text;
}

std::string findingsJSON(std::string_view episodePath, std::span<const Diagnostic> findings,
                         std::string_view compilerText) {
    ordered_json list = ordered_json::array();
    for (const Diagnostic& finding : findings)
        list.push_back({{"severity", rawValue(finding.severity)},
                        {"line", finding.line},
                        {"column", finding.column},
                        {"message", finding.message},
                        {"id", finding.id()}});
    ordered_json document{{"episode", episodePath}, {"findings", std::move(list)}};
    if (!compilerText.empty())
        document["text"] = compilerText;
    return document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

} // namespace tarnwick
