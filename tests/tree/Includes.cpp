#include "tests/tree/Includes.h"

#include "tests/tree/Tree.h"

#include <algorithm>
#include <regex>

namespace tarnwick {

namespace fs = std::filesystem;

std::vector<fs::path> cppFiles() {
    std::vector<fs::path> files;
    for (const std::string& folder : topFolders())
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(TREE_ROOT) / folder)) {
            const fs::path file = fs::relative(entry.path(), TREE_ROOT);
            if ((file.extension() == ".h" || file.extension() == ".cpp") &&
                !file.string().starts_with("TarnwickMSL/Library/"))
                files.push_back(file);
        }
    std::ranges::sort(files);
    return files;
}

std::vector<Include> allIncludes() {
    const std::regex directive(R"rx(^\s*#\s*include\s*(["<])([^">]+)[">].*)rx");
    std::vector<Include> includes;
    for (const fs::path& file : cppFiles())
        for (const std::string& line : linesOf(fs::path(TREE_ROOT) / file))
            if (std::smatch match; std::regex_match(line, match, directive))
                includes.push_back({file, match[2], match[1] == "\""});
    return includes;
}

} // namespace tarnwick
