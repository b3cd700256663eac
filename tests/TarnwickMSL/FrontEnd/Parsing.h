// Runs the front end on programs for its tests.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <string>
#include <utility>
#include <vector>

namespace tarnwick::msl {

struct Outcome {
    std::vector<EntrySignature> entries;
    std::string messages;
    bool failed = false;
};

// A whole program, as "program_source".
Outcome parsedWhole(const std::string& program);

// With the header before it; the program's own lines begin at line 1 of "shader.metal".
Outcome parsed(const std::string& program);

// The programs of the corpus by name, and their texts.
std::vector<std::pair<std::string, std::string>> corpus();

// The text with comments, strings and lines of the preprocessor as spaces.
std::string codeAlone(std::string text);

// "line:column" of an offset, both from 1.
std::string lineAndColumn(const std::string& text, std::size_t offset);

} // namespace tarnwick::msl
