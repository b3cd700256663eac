// The words that can be at one place of a command line, for the completion of shells.
#pragma once

#include "TarnwickCore/CommandLine/Option.h"
#include "TarnwickCore/Params.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct CompletedWord {
    std::string word;      // whole; more follows without a blank if it ends with "="
    std::string purpose{}; // may be empty

    bool operator==(const CompletedWord&) const = default;
};

// Names of files, which the shell completes.
struct CompletedFiles {
    std::string before{};               // the word's text before the name: "--settings="
    std::vector<std::string> endings{}; // "metal"; empty: any file
    bool areFolders = false;            // no files

    bool operator==(const CompletedFiles&) const = default;
};

struct Completion {
    std::vector<CompletedWord> words{};
    std::optional<CompletedFiles> files{};
};

// The parameters of the episode in a file; none if it cannot be read.
using ParamsOf = std::function<std::vector<ParamDecl>(const std::string& episode)>;

// The words of the form that fit at words[at], at < words.size(), and begin with the text there:
// options that are not given yet, values, files. The name of a value or operand says which files
// fit: EPISODE, PART, FILE, OUT.png, FOLDER. NAME=VALUE is a parameter of the episode in the first
// operand.
Completion completionOf(const CommandForm& form, std::span<const char* const> words, std::size_t at,
                        const ParamsOf& paramsOf);

} // namespace tarnwick
