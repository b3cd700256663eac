// The names that can complete the word before the cursor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

// In the order of a list of completions.
enum class CompletionKind : std::uint8_t {
    variable,
    member,
    function,
    type,
    constant,
    attribute,
    keyword
};

struct Completion {
    std::string name;
    CompletionKind kind = CompletionKind::variable;
    std::string detail;   // a type, or the first signature of a function
    std::string sentence; // the description; may be empty

    bool operator==(const Completion&) const = default;
};

struct Completions {
    std::size_t from = 0; // the byte at which the word begins; the names replace it
    std::vector<Completion> list;
};

// Why completions are computed: after each typed character, they must not disturb.
enum class CompletionCause : std::uint8_t { typing, request };

// The completions at the byte `at` of an episode's text: members after a dot, values of an
// enumeration after "::", attributes after "[[", otherwise the names in scope: the episode's own,
// then the host's, then the library's and the language's. None in comments, strings and
// preprocessor lines; while typing, none for words of one letter and for the name in a declaration.
// Accepts any bytes.
Completions completionsAt(std::string_view text, std::size_t at, CompletionCause cause);

// Whether the byte `at` is in a comment, a string or a preprocessor line.
bool isOutsideCode(std::string_view text, std::size_t at);

} // namespace tarnwick::player
