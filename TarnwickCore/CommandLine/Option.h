// A command's options, each a row that says its name, its values, whether it is required and its
// default. The parser (Arguments.h), the help (Help.h) and all usage errors are made of the rows.
#pragma once

#include "TarnwickCore/CommandLine/Values.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace tarnwick {

// Text in all rows is constant. An option that takes a value has a default or is required.
struct Option {
    std::string_view name;  // "--size", "-o"
    std::string_view value; // the name of its value in the help, "WxH"; empty for a switch;
                            // "FILE..." if it takes all words up to the next option; names of files
                            // and of parameters are completed by it (Completion.h)
    std::string_view help;  // without a full stop
    Values values = AnyText{};
    bool isRequired = false;
    // The default: a value, which Arguments::textOf() returns, or a description, "none".
    std::string_view byDefault{};
    bool isRepeatable = false;   // each value counts, not only the last
    std::string_view excludes{}; // options that may not be given with it, separated by blanks
    std::string_view needs{};    // an option that must be given with it
    bool isJoined = false;       // the value may follow in the same word: "-DNAME"
};

// The form of a command's words.
struct CommandForm {
    // "EPISODE": one operand; "PART...": at least one; "[EPISODE]": at most one; empty: none.
    std::string_view operands;
    std::span<const Option> options;
    bool allowsOneDash = false; // "-root" for "--root", as XScreenSaver writes it
};

// The rows of several groups, one after another.
template <std::size_t... counts>
constexpr auto joined(const std::array<Option, counts>&... groups) {
    std::array<Option, (counts + ...)> all{};
    auto end = all.begin();
    ((end = std::copy(groups.begin(), groups.end(), end)), ...);
    return all;
}

inline bool takesValue(const Option& option) {
    return !option.value.empty();
}
inline bool takesList(const Option& option) {
    return option.value.ends_with("...");
}

} // namespace tarnwick
