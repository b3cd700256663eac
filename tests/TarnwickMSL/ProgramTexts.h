// The programs of a folder, for tests that go through all of them.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tarnwick {

struct ProgramText {
    std::string name; // of the file
    std::string text;
};

// All .metal files, by name.
inline std::vector<ProgramText> programTexts(const std::filesystem::path& folder) {
    std::vector<ProgramText> programs;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".metal")
            continue;
        std::ifstream stream(entry.path());
        programs.push_back({entry.path().filename(), {std::istreambuf_iterator<char>(stream), {}}});
    }
    std::ranges::sort(programs, {}, &ProgramText::name);
    return programs;
}

} // namespace tarnwick
