// The fuzzer refuses to start with a list of words (fuzz/words) that has a line of another form.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

namespace tarnwick::fuzz {

TEST(Words, areQuotedWithTheEscapesThatTheFuzzerReads) {
    const std::regex form(R"--(\s*(#.*)?|[^"]*"([^"\\]|\\[\\"]|\\x[0-9A-Fa-f]{2})+"\s*)--");
    for (const auto& list : std::filesystem::directory_iterator(FUZZ_WORDS)) {
        std::ifstream file(list.path());
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            ++number;
            EXPECT_TRUE(std::regex_match(line, form)) << list.path() << ':' << number;
        }
        EXPECT_GT(number, 0) << list.path();
    }
}

} // namespace tarnwick::fuzz
