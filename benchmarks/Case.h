// A shader of the benchmark: an episode, and the same algorithm written by hand in GLSL.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct Case {
    std::string name;
    std::string program; // the assembled episode
    std::string twin;    // a complete GLSL 450 fragment shader with the same bindings, or empty
    std::vector<float> values; // the content of the buffer of values: the defaults

    bool operator==(const Case&) const = default;
};

// The content of a file; empty if it cannot be read.
std::string fileText(const std::filesystem::path& file);

// Every NAME.metal below a folder with a NAME.frag beside it, sorted. A name is the address in the
// folder without the ending, for example "gallery/silk".
std::vector<Case> cases(const std::filesystem::path& folder);

// Every episode of a folder, without a twin, sorted.
std::vector<Case> episodeCases(const std::filesystem::path& folder);

} // namespace tarnwick::bench
