// The #include lines of the source tree.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

struct Include {
    std::filesystem::path file; // from the tree's root
    std::string name;
    bool isOurs = false; // in quotes
};

// All headers and sources of the tree, from its root, without the standard library's Metal text.
std::vector<std::filesystem::path> cppFiles();

std::vector<Include> allIncludes();

} // namespace tarnwick
