#include "tests/reliability/CompilerPrograms.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view digits = "0123456789";

bool isDigit(char character) {
    return digits.find(character) != digits.npos;
}

} // namespace

CompilerPrograms::CompilerPrograms(const fs::path& folder, unsigned seed) : random_(seed) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".metal")
            files.push_back(entry.path());
    std::ranges::sort(files);
    for (const fs::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        texts_.emplace_back(std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>());
    }
}

std::size_t CompilerPrograms::below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
}

CompilerPrograms::Pick CompilerPrograms::next() {
    Pick pick{.program = below(texts_.size())};
    pick.text = texts_[pick.program];
    switch (below(5)) {
    case 0: // as it is
        break;
    case 1: { // damaged
        const std::size_t at = below(pick.text.size());
        pick.text.erase(at, 1 + below(40));
        break;
    }
    default: // the digit after a point
        for (std::size_t at = 1; at + 1 < pick.text.size(); ++at)
            if (pick.text[at] == '.' && isDigit(pick.text[at - 1]) && isDigit(pick.text[at + 1]))
                pick.text[at + 1] = digits[below(digits.size())];
    }
    pick.isChanged = pick.text != texts_[pick.program];
    return pick;
}

} // namespace tarnwick
