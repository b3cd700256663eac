#include "TarnwickMSL/Preamble.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <array>

namespace tarnwick::msl {
namespace {

struct Version {
    std::string_view name;
    std::uint32_t number;
};
// Before 3.0 a version also has names for a platform.
// clang-format off
constexpr std::array<Version, 26> versions{{
    {"metal1.0", 100}, {"macos-metal1.0", 100}, {"ios-metal1.0", 100},
    {"metal1.1", 110}, {"macos-metal1.1", 110}, {"ios-metal1.1", 110},
    {"metal1.2", 120}, {"macos-metal1.2", 120}, {"ios-metal1.2", 120},
    {"metal2.0", 200}, {"macos-metal2.0", 200}, {"ios-metal2.0", 200},
    {"metal2.1", 210}, {"macos-metal2.1", 210}, {"ios-metal2.1", 210},
    {"metal2.2", 220}, {"macos-metal2.2", 220}, {"ios-metal2.2", 220},
    {"metal2.3", 230}, {"macos-metal2.3", 230}, {"ios-metal2.3", 230},
    {"metal2.4", 240}, {"macos-metal2.4", 240}, {"ios-metal2.4", 240},
    {"metal3.0", 300},
    {"metal3.1", newestVersion},
}};
// clang-format on

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// The name as a string of a #line. A name in several lines would end the string.
std::string lineMarker(std::string_view name) {
    std::string line = "#line 1 \"";
    for (const char character : name) {
        if (character == '"' || character == '\\')
            line += '\\';
        line += character == '\n' || character == '\r' ? '?' : character;
    }
    return line + "\"\n";
}

} // namespace

bool isValid(const Define& define) {
    return !define.name.empty() && (define.name[0] < '0' || define.name[0] > '9') &&
           std::ranges::all_of(define.name, isWordCharacter) &&
           define.value.find_first_of(std::string_view("\n\r\0", 3)) == std::string::npos &&
           !define.value.ends_with('\\');
}

std::optional<std::uint32_t> versionNamed(std::string_view name) {
    const auto* found = std::ranges::find(versions, name, &Version::name);
    return found == versions.end() ? std::nullopt : std::optional(found->number);
}

std::vector<std::string_view> versionNames() {
    std::vector<std::string_view> names;
    for (const Version& version : versions)
        names.push_back(version.name);
    return names;
}

std::string preamble(const std::vector<Define>& defines, std::uint32_t version,
                     std::string_view name) {
    std::string lines;
    if (version != newestVersion)
        lines +=
            "#undef __METAL_VERSION__\n#define __METAL_VERSION__ " + std::to_string(version) + "\n";
    for (const Define& define : defines) {
        precondition(isValid(define), "the options of a compilation are checked before", "define",
                     define.name);
        lines += "#define " + define.name + " " + define.value + "\n";
    }
    if (!lines.empty())
        lines.insert(0, lineMarker("<defines>"));
    if (!lines.empty() || !name.empty())
        lines += lineMarker(name.empty() ? "program_source" : name);
    return lines;
}

} // namespace tarnwick::msl
