// One shader of the bench: an episode, and the same algorithm written by hand in GLSL.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct Case {
    std::string name;
    std::string program;       // the episode, assembled
    std::string twin;          // a whole GLSL 450 fragment shader with the same bindings
    std::vector<float> values; // the parameters' defaults, as the values buffer holds them

    bool operator==(const Case&) const = default;
};

// All of a file; empty where it cannot be read.
std::string fileText(const std::filesystem::path& file);

// Every NAME.metal of a folder that has a NAME.frag beside it, by name.
std::vector<Case> cases(const std::filesystem::path& folder);

} // namespace tarnwick::bench
