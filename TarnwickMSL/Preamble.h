// The lines that are put before a program: its macros, its version and its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

// A macro of the preprocessor, defined before the first line.
struct Define {
    std::string name, value = "1";

    bool operator==(const Define&) const = default;
};

// Whether the name is an identifier and the value is one line that does not continue in the next.
bool isValid(const Define& define);

// A released version of the language as __METAL_VERSION__ gives it: 310 for 3.1. It sets that macro
// and nothing else: the language and its library are those of 3.1.
inline constexpr std::uint32_t newestVersion = 310;
// Of "metal3.1", or with the platform that older versions have: "macos-metal2.4", "ios-metal2.4".
// Nothing for other names.
std::optional<std::uint32_t> versionNamed(std::string_view name);
// All these names, by version, ascending.
std::vector<std::string_view> versionNames();

// The lines for valid macros, a version, and the name of the source in messages ("program_source"
// if it is empty). They end with a #line, so that messages about the program have its name and its
// lines. Empty for the defaults.
std::string preamble(const std::vector<Define>& defines, std::uint32_t version,
                     std::string_view name);

} // namespace tarnwick::msl
