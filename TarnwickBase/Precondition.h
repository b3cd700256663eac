// Stops the process if the program breaks one of its own rules: a violation. A mistake of a user, a
// file or a server is an error (an exception) and must never reach a precondition.
#pragma once

#include <concepts>
#include <initializer_list>
#include <source_location>
#include <string>
#include <string_view>

namespace tarnwick {

// A rule as a statement without a full stop, "a region lies within its texture", and the place of
// the call.
struct Rule {
    // Implicit, so that a call passes the text alone.
    constexpr Rule(const char* text, std::source_location place = std::source_location::current())
        : text(text), place(place) {}

    std::string_view text;
    std::source_location place;
};

// How a violation prints a value. Another type has its own valueText, declared beside it.
std::string valueText(double value); // up to 9 digits
inline std::string valueText(std::integral auto value) {
    return std::to_string(value);
}
inline std::string valueText(bool value) {
    return value ? "true" : "false";
}
inline std::string valueText(std::string_view value) {
    return std::string(value);
}
inline std::string valueText(const char* value) {
    return value;
}

// Writes "Violated: RULE (NAME VALUE, NAME VALUE), FILE:LINE" to standard error and aborts.
// `described` is name, value, name, value; FILE is relative to the root of the repository.
[[noreturn]] void reportViolation(const Rule& rule, std::initializer_list<std::string> described);

// Does nothing if `condition` holds, otherwise reports the violation. `values` are a name, its
// value, a name, its value:
//     precondition(size <= room, "the data fit into the buffer", "size", size, "room", room);
// They are converted to text only after a violation. May be called from any thread.
template <typename... Values>
void precondition(bool condition, Rule rule, const Values&... values) {
    static_assert(sizeof...(values) % 2 == 0, "a value has a name before it");
    if (!condition) [[unlikely]]
        reportViolation(rule, {valueText(values)...});
}

} // namespace tarnwick
