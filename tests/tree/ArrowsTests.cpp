// Includes go only where the build says that they may: cmake/Folders.cmake writes down for each
// folder with a target which others it may include.
#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

using Arrows = std::map<std::string, std::set<std::string>>;

Arrows writtenArrows() {
    Arrows arrows;
    for (const std::string& line : linesOf(TREE_ARROWS)) {
        const std::size_t colon = line.find(':');
        if (colon == line.npos)
            continue;
        std::set<std::string>& below = arrows[line.substr(0, colon)];
        std::istringstream names(line.substr(colon + 1));
        for (std::string name; names >> name;)
            below.insert(name);
    }
    return arrows;
}

// The innermost folder with a target that `file` (from the tree's root) lies in; empty if none.
std::string targetFolder(const Arrows& arrows, fs::path file) {
    while (file.has_relative_path()) {
        file = file.parent_path();
        if (arrows.contains(file.string()))
            return file.string();
    }
    return {};
}

struct Include {
    fs::path file; // from the tree's root
    std::string name;
    bool isOurs = false; // in quotes
};

std::vector<Include> allIncludes() {
    const std::regex directive(R"rx(^\s*#\s*include\s*(["<])([^">]+)[">].*)rx");
    std::vector<Include> includes;
    for (const std::string& folder : topFolders())
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(TREE_ROOT) / folder)) {
            if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp")
                continue;
            const fs::path file = fs::relative(entry.path(), TREE_ROOT);
            for (const std::string& line : linesOf(entry.path()))
                if (std::smatch match; std::regex_match(line, match, directive))
                    includes.push_back({file, match[2], match[1] == "\""});
        }
    return includes;
}

// Tests and measurements may look at everything; the shaders' standard library is Metal text.
bool isFree(const fs::path& file) {
    const std::string top = file.begin()->string();
    return top == "tests" || top == "benchmarks" || top == "fuzz" ||
           file.string().starts_with("TarnwickMSL/Library/");
}

TEST(Arrows, areKeptByEveryInclude) {
    const Arrows arrows = writtenArrows();
    ASSERT_TRUE(arrows.contains("TarnwickBase"));
    int looked = 0;
    for (const Include& include : allIncludes()) {
        if (!include.isOurs || include.file.string().starts_with("TarnwickMSL/Library/"))
            continue;
        EXPECT_TRUE(fs::exists(fs::path(TREE_ROOT) / include.name))
            << include.file << " includes \"" << include.name
            << "\", which is no file's address from the tree's root.";
        if (isFree(include.file))
            continue;
        const std::string from = targetFolder(arrows, include.file);
        const std::string to = targetFolder(arrows, include.name);
        if (from.empty()) {
            ADD_FAILURE() << include.file << " lies in no folder with a target.";
            continue;
        }
        EXPECT_TRUE(from == to || arrows.at(from).contains(to))
            << include.file << " includes \"" << include.name << "\", but " << from
            << " may not include " << (to.empty() ? "that folder" : to) << ".";
        ++looked;
    }
    EXPECT_GT(looked, 100);
}

// Libraries that one folder alone may know, and of it only what no other folder includes.
struct Keeper {
    std::string_view prefix; // of the header's name
    std::string_view folder;
};
constexpr std::array<Keeper, 10> keepers{{
    {"clang/", "TarnwickMSL"},
    {"llvm/", "TarnwickMSL"},
    {"spirv-tools/", "TarnwickMSL"}, // SPIR-V itself is what it and TarnwickGPU share
    {"vulkan/", "TarnwickGPU"},
    {"pango/", "TarnwickPlatform/Text"},
    {"cairo", "TarnwickPlatform/Text"},
    {"asio/", "TarnwickPlatform/Dispatch"},
    {"curl/", "TarnwickPlatform/Net"},
    {"png.h", "TarnwickPlatform/Pictures"},
    {"libav", "TarnwickPlatform/Movie"},
}};

TEST(Arrows, keepForeignHeadersInOneFolder) {
    for (const Include& include : allIncludes())
        for (const Keeper& keeper : keepers)
            if (!include.isOurs && !isFree(include.file) &&
                include.name.starts_with(keeper.prefix)) {
                EXPECT_TRUE(include.file.string().starts_with(keeper.folder))
                    << include.file << " includes <" << include.name << ">, which only "
                    << keeper.folder << " may.";
            }
}

} // namespace
} // namespace tarnwick
