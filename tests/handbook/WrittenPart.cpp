#include "tests/handbook/WrittenPart.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace tarnwick {
namespace {

constexpr std::string_view beginning = "<!-- written by handbookTests -->\n\n";
constexpr std::string_view ending = "<!-- end -->\n";

std::filesystem::path pathOf(const std::string& name) {
    return std::filesystem::path(TREE_ROOT) / "docs" / name;
}

} // namespace

std::string pageText(const std::string& name) {
    std::ifstream file(pathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void expectWrittenPart(const std::string& page, const std::string& wanted) {
    const std::string text = pageText(page);
    const std::size_t mark = text.find(beginning), last = text.find(ending);
    ASSERT_TRUE(mark != std::string::npos && last != std::string::npos && mark < last)
        << "docs/" << page << " has no marks.";
    const std::size_t first = mark + beginning.size();
    if (std::getenv("TARNWICK_REWRITE") != nullptr) {
        std::ofstream(pathOf(page), std::ios::binary)
            << text.substr(0, first) << wanted << text.substr(last);
        return;
    }
    EXPECT_EQ(text.substr(first, last - first), wanted)
        << "TARNWICK_REWRITE=1 build/release/bin/handbookTests writes docs/" << page << " anew.";
}

} // namespace tarnwick
