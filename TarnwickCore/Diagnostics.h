// The compiler's text, read into messages that point at the user's own lines.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

enum class Severity : std::uint8_t { error, warning, note };

// "error", "warning", "note": the compiler's own words.
std::string_view rawValue(Severity severity);
std::optional<Severity> severityOf(std::string_view rawValue);

struct Diagnostic {
    Severity severity = Severity::error;
    std::int64_t line = 0;   // from 1; 0 when the message is not about the episode's own text
    std::int64_t column = 0; // from 1, as the compiler gave it; 0 when it could not be read
    std::string message;

    bool operator==(const Diagnostic&) const = default;

    // What lists tell diagnostics apart by: "error:12:5:use of undeclared identifier 'foo'".
    std::string id() const;
};

struct DiagnosticParser {
    // The messages of `text` in their order; lines of any other form (excerpts, carets, counts) are
    // left out. Any bytes are taken; never fails.
    static std::vector<Diagnostic> parse(std::string_view text);
};

} // namespace tarnwick
