// Programs for long runs of the compiler.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace tarnwick {

// Picks texts at random: programs of a folder as they are, with other numbers, and damaged.
class CompilerPrograms {
  public:
    // Reads all files of the folder that end in .metal, in the order of their names.
    CompilerPrograms(const std::filesystem::path& folder, unsigned seed);

    struct Pick {
        std::string text;
        std::size_t program = 0; // its index in the folder
        bool isChanged = false;  // the text is not that of the file
    };
    Pick next();
    std::size_t count() const { return texts_.size(); }
    const std::string& text(std::size_t program) const { return texts_[program]; }

  private:
    std::size_t below(std::size_t end);

    std::vector<std::string> texts_;
    std::mt19937 random_;
};

} // namespace tarnwick
