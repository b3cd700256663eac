// docs/functions.md has every function of the standard library, with its signatures, its sentence
// and its measured errors.
#include "TarnwickMSL/Declarations/LibraryNames.h"
#include "TarnwickMSL/Library/functions/list.h"
#include "tests/handbook/Accuracy.h"
#include "tests/handbook/WrittenPart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

using msl::LibraryName;

// The names of the rows of a list of list.h.
#define AFTER_0(name, ...) #name,
#define AFTER_1(T, name, ...) #name,
#define AFTER_2(R, T, name, ...) #name,
#define AFTER_3(R, T, A, name, ...) #name,

// A function belongs to the first section that has its name, or the beginning of it: "atomic_".
struct Section {
    std::string_view title;
    std::vector<std::string_view> names;
};

const std::array<Section, 13>& sections() {
    static const std::array<Section, 13> all{{
        {"Rounding, limits and blends",
         {MSL_COMMON_FUNCTIONS(AFTER_1, T) MSL_LANE_FUNCTIONS(AFTER_3, T) "fract", "fmod", "modf",
          "divide"}},
        {"Powers, logarithms and angles",
         {MSL_MATH_FUNCTIONS(AFTER_1, T, I) MSL_CORE_FUNCTIONS(AFTER_0)}},
        {"Vectors and matrices",
         {MSL_GEOMETRIC_FUNCTIONS(AFTER_2, T, E) "dot", "cross", "refract", "determinant",
          "transpose"}},
        {"Tests and choices", {MSL_RELATIONAL_FUNCTIONS(AFTER_2, T, I, B) "all", "any", "select"}},
        {"Integers",
         {MSL_INTEGER_SCALAR_FUNCTIONS(AFTER_2, T, U, W) MSL_INTEGER_FUNCTIONS(AFTER_2, T)
              MSL_INTEGER_LANE_FUNCTIONS(AFTER_1, T, U, W) MSL_24_BIT_FUNCTIONS(AFTER_2, T)}},
        {"Pixels", {"dfdx", "dfdy", "fwidth", "discard_fragment", "get_"}},
        {"Bits and packed colours", {"as_type", "pack_", "unpack_"}},
        {"Atomic values", {"atomic_"}},
        {"Barriers", {"threadgroup_barrier", "simdgroup_barrier"}},
        {"Matrices of SIMD-groups", {"simdgroup_", "make_diagonal_", "make_filled_"}},
        {"SIMD-groups", {"simd_"}},
        {"Quads", {"quad_"}},
        {"Others", {"assert", "is_function_constant_defined", "make_array_ref"}},
    }};
    return all;
}

bool has(const Section& section, std::string_view function) {
    return std::ranges::any_of(section.names, [&](std::string_view name) {
        return function == name || (name.ends_with('_') && function.starts_with(name));
    });
}

const Section* sectionOf(std::string_view function) {
    const auto found = std::ranges::find_if(
        sections(), [&](const Section& section) { return has(section, function); });
    return found == sections().end() ? nullptr : &*found;
}

// As a block of code.
std::string blockOf(std::string_view lines) {
    std::string block = "    ";
    for (const char one : lines)
        block += one == '\n' ? "\n    " : std::string{one};
    return block + "\n";
}

std::string entryOf(const LibraryName& function, const std::map<std::string, Accuracy>& measured) {
    const std::string accuracy = accuracyText(measured, std::string(function.name));
    return "### " + std::string(function.name) + "\n\n" + blockOf(function.signatures) + "\n" +
           std::string(function.sentence) + "\n" + (accuracy.empty() ? "" : "\n" + accuracy) + "\n";
}

std::string functionsText() {
    const auto measured = measuredAccuracy();
    std::string text;
    for (const Section& section : sections()) {
        text += "## " + std::string(section.title) + "\n\n";
        for (const LibraryName& row : msl::libraryNames())
            if (row.kind == LibraryName::Kind::function && sectionOf(row.name) == &section)
                text += entryOf(row, measured);
    }
    return text;
}

// The functions of a type, each below its sentence.
std::string memberOf(const LibraryName& row) {
    return (!row.sentence.empty() ? "    // " + std::string(row.sentence) + "\n" : "") +
           blockOf(row.signatures);
}

bool isMemberFunction(const LibraryName& row) {
    return row.kind == LibraryName::Kind::member &&
           row.signatures.find(std::string(row.name) + "(") != std::string_view::npos;
}

std::string membersText() {
    std::string text = "## Functions of types\n\n";
    std::string_view owner;
    for (const LibraryName& row : msl::libraryNames()) {
        if (!isMemberFunction(row))
            continue;
        if (row.owner != owner)
            text +=
                std::string(owner.empty() ? "" : "\n") + "### " + std::string(row.owner) + "\n\n";
        owner = row.owner;
        text += memberOf(row);
    }
    return text + "\n";
}

TEST(FunctionsPage, hasEveryFunction) {
    for (const LibraryName& row : msl::libraryNames())
        if (row.kind == LibraryName::Kind::function) {
            EXPECT_NE(sectionOf(row.name), nullptr) << row.name << " is in no section.";
        }
    expectWrittenPart("functions.md", functionsText() + membersText());
}

// Every row of the tables of errors is of a function that the page has.
TEST(FunctionsPage, hasEveryMeasuredFunction) {
    std::set<std::string> functions;
    for (const LibraryName& row : msl::libraryNames())
        functions.insert(std::string(row.name));
    for (const auto& [key, accuracy] : measuredAccuracy()) {
        std::string name = key.substr(0, key.find(" (half)"));
        name = name.starts_with("precise::") ? name.substr(9) : name;
        EXPECT_TRUE(functions.contains(name)) << key;
    }
}

} // namespace
} // namespace tarnwick
