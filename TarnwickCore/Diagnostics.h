// Reads the compiler's text output into diagnostics at the episode's own lines.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

enum class Severity : std::uint8_t { error, warning, note };

// The words of the compiler: "error", "warning", "note".
std::string_view rawValue(Severity severity);
std::optional<Severity> severityOf(std::string_view rawValue); // exactly

struct Diagnostic {
    Severity severity = Severity::error;
    std::int64_t line = 0;   // from 1; 0: not about the episode's own text
    std::int64_t column = 0; // from 1, in bytes; 0: unknown
    std::string message;     // the compiler's, one line

    bool operator==(const Diagnostic&) const = default;

    // An identifier for lists: "error:12:5:use of undeclared identifier 'foo'".
    std::string id() const;
};

struct DiagnosticParser {
    // The diagnostics in `text`, in order. Other lines (excerpts, carets, counts) are ignored.
    // Accepts any bytes; never fails.
    static std::vector<Diagnostic> parse(std::string_view text);
};

} // namespace tarnwick
