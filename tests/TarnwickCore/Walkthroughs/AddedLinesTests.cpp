#include "TarnwickCore/Walkthroughs/AddedLines.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace tarnwick;

namespace {

using Lines = std::vector<std::string_view>;

// The reference: the whole table, filled and walked directly.
std::vector<bool> byTable(const Lines& previous, const Lines& current) {
    const std::size_t p = previous.size(), c = current.size();
    std::vector<std::vector<std::size_t>> longest(p + 1, std::vector<std::size_t>(c + 1));
    for (std::size_t i = p; i-- > 0;)
        for (std::size_t j = c; j-- > 0;)
            longest[i][j] = previous[i] == current[j]
                                ? longest[i + 1][j + 1] + 1
                                : std::max(longest[i + 1][j], longest[i][j + 1]);
    std::vector<bool> added(c);
    for (std::size_t i = 0, j = 0; j < c;) {
        if (i < p && previous[i] == current[j])
            ++i, ++j;
        else if (i == p || longest[i + 1][j] < longest[i][j + 1])
            added[j++] = true;
        else
            ++i;
    }
    return added;
}

} // namespace

TEST(AddedLines, marksTheLinesThatTheWholeTableMarks) {
    const Lines words{"}", "float a;", "return a;", "a += b;", "", "b", "c", "d", "e", "f", "g"};
    std::mt19937 random(7);
    auto lines = [&](std::size_t longest, std::size_t kinds) {
        Lines all(random() % (longest + 1));
        for (std::string_view& line : all)
            line = words[random() % kinds];
        return all;
    };
    for (int round = 0; round < 1500; ++round) {
        // After 64 and 128 columns, additions carry between words.
        const std::size_t longest = round % 10 == 0 ? 200 : 12, kinds = 1 + random() % words.size();
        const Lines previous = lines(longest, kinds), current = lines(longest, kinds);
        EXPECT_EQ(addedLines(previous, current), byTable(previous, current)) << round;
    }
}
