// The signature and description of the function at the cursor.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnwick::player {

struct CallHelp {
    std::vector<std::string> signatures; // not empty; of overloads, one line each
    std::string sentence;                // may be empty
    std::size_t at = 0;                  // the byte at which the function's name begins
    std::optional<std::size_t> argument; // from 0; absent outside of the parentheses

    bool operator==(const CallHelp&) const = default;
};

// The call whose arguments are at the byte `at`, the innermost one. Nothing in comments and for
// functions that are not known.
std::optional<CallHelp> callAround(std::string_view text, std::size_t at);
// The function whose name is at the byte `at`, or else the call around it.
std::optional<CallHelp> functionAt(std::string_view text, std::size_t at);

// The [begin, end) of an argument in a signature; empty if it has fewer.
std::pair<std::size_t, std::size_t> argumentRange(std::string_view signature, std::size_t argument);

} // namespace tarnwick::player
