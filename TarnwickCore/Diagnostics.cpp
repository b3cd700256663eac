#include "TarnwickCore/Diagnostics.h"

#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <array>
#include <cstddef>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 3> severityNames{"error", "warning", "note"};

const Pattern& messagePattern() {
    static const Pattern pattern(
        R"((shader\.metal|tw_host|program_source):(\d+):(\d+): (error|warning|note): (.*))");
    return pattern;
}

} // namespace

std::string_view rawValue(Severity severity) {
    return severityNames[static_cast<std::size_t>(severity)];
}

std::optional<Severity> severityOf(std::string_view rawValue) {
    for (std::size_t index = 0; index < severityNames.size(); ++index)
        if (severityNames[index] == rawValue)
            return static_cast<Severity>(index);
    return std::nullopt;
}

std::string Diagnostic::id() const {
    return std::string(rawValue(severity)) + ":" + std::to_string(line) + ":" +
           std::to_string(column) + ":" + message;
}

std::vector<Diagnostic> DiagnosticParser::parse(std::string_view text) {
    std::vector<Diagnostic> diagnostics;
    for (const std::string_view line : linesOf(text)) {
        if (line.find(": ") == std::string_view::npos)
            continue;
        const auto groups = messagePattern().firstMatch(line);
        if (!groups)
            continue;
        // Line numbers of generated code mean nothing to the user.
        const bool isEpisode = (*groups)[1] == "shader.metal";
        diagnostics.push_back({.severity = severityOf((*groups)[4]).value_or(Severity::error),
                               .line = isEpisode ? integerOf((*groups)[2]).value_or(0) : 0,
                               .column = integerOf((*groups)[3]).value_or(0),
                               .message = std::string((*groups)[5])});
    }
    return diagnostics;
}

} // namespace tarnwick
