#include "tests/tree/Tree.h"

#include <algorithm>
#include <fstream>

namespace tarnwick {

namespace fs = std::filesystem;

std::vector<std::string> topFolders() {
    std::vector<std::string> folders;
    for (const fs::directory_entry& entry : fs::directory_iterator(TREE_ROOT)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory() && !name.starts_with('.') && name != "build" &&
            !fs::is_empty(entry.path()))
            folders.push_back(name);
    }
    std::ranges::sort(folders);
    return folders;
}

std::vector<std::string> linesOf(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

} // namespace tarnwick
