// Messages and signatures name the places of the program, through all rewrites of its tokens.
#include "tests/TarnwickMSL/FrontEnd/Parsing.h"

#include <gtest/gtest.h>

#include <regex>

namespace tarnwick::msl {

namespace {

// Numbers outside of attributes.
std::vector<std::pair<std::size_t, std::size_t>> numbersOf(const std::string& program) {
    static const std::regex number(R"(\[\[[^\]]*\]\]|[A-Za-z_]\w*|\.?\d[\w.']*)");
    const std::string code = codeAlone(program);
    std::vector<std::pair<std::size_t, std::size_t>> found;
    for (std::sregex_iterator match(code.begin(), code.end(), number), end; match != end; ++match)
        if (const char first = match->str()[0]; first == '.' || (first >= '0' && first <= '9'))
            found.emplace_back(match->position(), match->length());
    return found;
}

} // namespace

// A number of each program becomes a name that is not there.
TEST(Places, ofErrorsAreThoseOfTheProgram) {
    std::size_t n = 0, tried = 0;
    for (auto [name, program] : corpus()) {
        const auto numbers = numbersOf(program);
        if (++n % 3 != 0 || numbers.empty())
            continue;
        const auto [at, size] = numbers[n * 7 % numbers.size()];
        program.replace(at, size, "nowhere");
        const std::string expected = "program_source:" + lineAndColumn(program, at) +
                                     ": error: use of undeclared identifier 'nowhere'";
        const Outcome found = parsedWhole(program);
        EXPECT_TRUE(found.failed) << name;
        EXPECT_NE(found.messages.find(expected), std::string::npos)
            << name << ": " << expected << "\n"
            << found.messages;
        ++tried;
    }
    EXPECT_GT(tried, 50u);
}

TEST(Places, ofEntryPointsAreThoseOfTheirNames) {
    std::size_t n = 0;
    for (const auto& [name, program] : corpus()) {
        if (++n % 5 != 0)
            continue;
        const Outcome found = parsedWhole(program);
        ASSERT_FALSE(found.entries.empty()) << name << found.messages;
        std::size_t last = 0;
        for (const EntrySignature& entry : found.entries) {
            const std::size_t qualifier = entry.name.rfind(':');
            const std::string own =
                qualifier == std::string::npos ? entry.name : entry.name.substr(qualifier + 1);
            std::size_t at = last;
            do
                at = program.find(own + "(", at + 1);
            while (at != std::string::npos &&
                   entry.place != "program_source:" + lineAndColumn(program, at));
            if (program.find("host_name") != std::string::npos)
                continue;
            ASSERT_NE(at, std::string::npos) << name << ": " << own << " at " << entry.place;
            last = at; // in the order of the source
            for (const Argument& argument : entry.arguments)
                EXPECT_LT(program.find(argument.name, at), program.find(") {", at))
                    << name << ": " << argument.name;
        }
    }
}

} // namespace tarnwick::msl
