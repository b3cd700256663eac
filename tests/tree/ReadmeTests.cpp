#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
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

// README.md and every page of docs/, from the tree's root.
std::vector<fs::path> pages() {
    std::vector<fs::path> found{"README.md"};
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(TREE_ROOT) / "docs"))
        if (entry.path().extension() == ".md")
            found.push_back(fs::path("docs") / entry.path().filename());
    return found;
}

// All first groups of `pattern` in the lines of a page; where it has a second one, "FIRST SECOND".
std::vector<std::string> matches(const fs::path& page, const std::regex& pattern) {
    std::vector<std::string> found;
    for (const std::string& line : linesOf(fs::path(TREE_ROOT) / page))
        for (std::sregex_iterator match(line.begin(), line.end(), pattern), end; match != end;
             ++match)
            found.push_back(match->size() > 2 ? (*match)[1].str() + " " + (*match)[2].str()
                                              : (*match)[1].str());
    return found;
}

// "## Movie files" is found by "#movie-files".
bool hasHeading(const fs::path& page, const std::string& anchor) {
    for (const std::string& heading : matches(page, std::regex("^#+ (.*)"))) {
        std::string name;
        for (const char character : heading)
            if (character == ' ')
                name += '-';
            else if (std::isalnum(static_cast<unsigned char>(character)) || character == '-')
                name += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        if (name == anchor)
            return true;
    }
    return false;
}

TEST(Pages, pointAtFilesAndHeadingsThatExist) {
    for (const fs::path& page : pages())
        for (const std::string& link : matches(page, std::regex(R"(\]\(([^):]+)\))"))) {
            const std::size_t hash = std::min(link.find('#'), link.size());
            const fs::path file =
                hash == 0 ? page : (page.parent_path() / link.substr(0, hash)).lexically_normal();
            EXPECT_TRUE(fs::exists(fs::path(TREE_ROOT) / file)) << page << " points at " << link;
            EXPECT_TRUE(hash == link.size() || hasHeading(file, link.substr(hash + 1)))
                << page << " points at " << link;
        }
}

// The index is the navigation of the handbook.
TEST(Index, listsEveryPageOnce) {
    std::vector<fs::path> listed{"README.md", "docs/index.md"}, found = pages();
    for (const std::string& page :
         matches("docs/index.md", std::regex(R"(^- \[[^\]]+\]\(([\w-]+\.md)\): .*)")))
        listed.push_back(fs::path("docs") / page);
    std::ranges::sort(listed);
    std::ranges::sort(found);
    EXPECT_EQ(listed, found);
}

// `TarnwickCore/Params` stands for its header and source.
bool isAddress(const std::string& address) {
    return fs::exists(fs::path(TREE_ROOT) / address) ||
           fs::exists(fs::path(TREE_ROOT) / (address + ".h"));
}

TEST(Pages, giveAddressesThatExist) {
    const std::vector<std::string> folders = topFolders();
    const std::regex quoted(R"(`(\w+/[\w./-]*)`)");
    for (const fs::path& page : pages())
        for (const std::string& address : matches(page, quoted))
            if (std::ranges::count(folders, address.substr(0, address.find('/'))) != 0) {
                EXPECT_TRUE(isAddress(address)) << page << ": " << address;
            }
}

TEST(Glossary, namesTypesThatTheirFilesHave) {
    const auto rows = matches("docs/glossary.md", std::regex(R"(\| `(\w+)` `([\w./]+)` \|$)"));
    EXPECT_GT(rows.size(), 40U);
    for (const std::string& row : rows) {
        const std::size_t blank = row.find(' ');
        const std::regex type("\\b(struct|class|enum class|using|void) " + row.substr(0, blank) +
                              "\\b");
        EXPECT_FALSE(matches(row.substr(blank + 1), type).empty()) << row;
    }
}

} // namespace
} // namespace tarnwick
