// The rows of manual pages that the tables of options do not have.
#pragma once

#include "TarnwickCore/CommandLine/ManualPage.h"

#include <span>
#include <string_view>

namespace tarnwick {

// A command line without its program's name: "still rose.metal -o rose.png".
struct ManualExample {
    std::string_view command; // "still", "play"
    std::string_view words;   // the words after it
    std::string_view purpose; // one sentence
};

extern const std::span<const ManualExample> manualExamples;

// A variable of the environment, or a file. `programs` are the pages that have it.
struct ManualFact {
    std::string_view name;
    std::string_view text;     // whole sentences
    std::string_view programs; // "tarnwick tarnwick-saver"
};

extern const std::span<const ManualFact> manualVariables;
extern const std::span<const ManualFact> manualPaths;

} // namespace tarnwick
