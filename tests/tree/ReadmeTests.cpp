#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

TEST(Readme, namesEveryFolderInItsTable) {
    const std::regex row(R"(^\| `(\w+)/` \|.*)");
    std::vector<std::string> named;
    for (const std::string& line : linesOf(fs::path(TREE_ROOT) / "README.md"))
        if (std::smatch match; std::regex_match(line, match, row))
            named.push_back(match[1]);
    std::ranges::sort(named);
    EXPECT_EQ(named, topFolders());
}

TEST(Readme, pointsAtFilesThatExist) {
    const std::regex link(R"(\]\(([^)#:]+)\))");
    for (const char* page :
         {"README.md", "docs/design.md", "docs/compiler.md", "docs/gpu.md", "docs/library.md",
          "docs/episodes.md", "docs/settings.md", "docs/service.md"}) {
        const fs::path file = fs::path(TREE_ROOT) / page;
        ASSERT_TRUE(fs::exists(file)) << page;
        for (const std::string& line : linesOf(file))
            for (std::sregex_iterator match(line.begin(), line.end(), link), end; match != end;
                 ++match)
                EXPECT_TRUE(fs::exists(file.parent_path() / (*match)[1].str()))
                    << page << " points at " << (*match)[1];
    }
}

} // namespace
} // namespace tarnwick
