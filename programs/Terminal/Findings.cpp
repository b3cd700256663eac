#include "programs/Terminal/Findings.h"

#include "TarnwickCore/Findings.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Terminal/Excerpt.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <unistd.h>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

// Indexed by the severities.
constexpr std::array<std::string_view, 3> severityStyles{"1;31", "1;35", "1;36"};

std::string placeText(std::string_view path, const Diagnostic& diagnostic) {
    const std::string place = diagnostic.line > 0 ? ":" + std::to_string(diagnostic.line) + ":" +
                                                        std::to_string(diagnostic.column)
                                                  : "";
    return terminalText(path) + place + ":";
}

// Messages may have several lines.
std::string messageText(std::string_view message) {
    std::string text;
    for (const std::string_view line : compilerLines(message))
        text += (text.empty() ? "" : "\n") + terminalText(line);
    return text;
}

std::string findingText(std::string_view path, std::span<const std::string_view> lines,
                        const Finding& finding, Colours colours) {
    const auto& [diagnostic, hint] = finding;
    const bool isNote = diagnostic.severity == Severity::note;
    const std::string severity(rawValue(diagnostic.severity));
    std::string text =
        styled(placeText(path, diagnostic), "1", colours) + " " +
        styled(severity + ":", severityStyles[static_cast<std::size_t>(diagnostic.severity)],
               colours) +
        " " + styled(messageText(diagnostic.message), isNote ? "" : "1", colours) + "\n";
    if (diagnostic.line > 0 && diagnostic.line <= static_cast<std::int64_t>(lines.size()))
        text += excerpt(lines[static_cast<std::size_t>(diagnostic.line) - 1], diagnostic.line,
                        diagnostic.column, colours);
    if (!hint.empty())
        text += "      " + styled("hint:", "1;36", colours) + " " + messageText(hint) + "\n";
    return text;
}

} // namespace

std::string findingsText(std::string_view episodePath, std::string_view source,
                         std::span<const Finding> findings, Colours colours) {
    const std::vector<std::string_view> lines = compilerLines(source);
    std::string text;
    for (const Finding& finding : findings)
        text += findingText(episodePath, lines, finding, colours);
    return text;
}

std::string findingsJSON(std::string_view episodePath, std::span<const Finding> findings,
                         std::string_view compilerText) {
    ordered_json list = ordered_json::array();
    for (const auto& [diagnostic, hint] : findings) {
        list.push_back({{"severity", rawValue(diagnostic.severity)},
                        {"line", diagnostic.line},
                        {"column", diagnostic.column},
                        {"message", diagnostic.message},
                        {"id", diagnostic.id()}});
        if (!hint.empty())
            list.back()["hint"] = hint;
    }
    ordered_json document{{"episode", episodePath}, {"findings", std::move(list)}};
    if (!compilerText.empty())
        document["text"] = compilerText;
    return jsonText(document) + "\n";
}

void printFindings(std::string_view path, std::string_view source,
                   std::span<const Finding> findings) {
    const std::string text = findingsText(path, source, findings, coloursOf(STDERR_FILENO));
    std::fputs(text.c_str(), stderr);
}

void printFindings(const Episode& episode, std::span<const Diagnostic> diagnostics) {
    printFindings(episode.path, episode.text, findingsOf(episode, diagnostics));
}

} // namespace tarnwick
