// docs/language.md is true: the programs that its tables name are the corpus's, all of them, and
// what it calls missing is refused, on its own line and with the message that stands there. So is
// docs/library.md: the functions that it names are there, but for those that it calls missing.
#include "TarnwickMSL/Compile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace tarnwick {

namespace {

// A row `| feature | section | yes or no | last cell |`: the last cell has the programs of the
// corpus that show the feature, or an example and the message that it gets, each in backticks.
struct Row {
    std::string feature;
    bool isThere = false;
    std::vector<std::string> quoted;
};

std::vector<std::string> cells(const std::string& line) {
    std::vector<std::string> cells(1);
    for (std::size_t i = 1; i < line.size(); i++)
        if (line[i] == '|' && line[i - 1] != '\\')
            cells.emplace_back();
        else if (line[i] != '\\' || i + 1 == line.size() || line[i + 1] != '|')
            cells.back() += line[i];
    return cells;
}

std::vector<std::string> quotations(const std::string& cell) {
    std::vector<std::string> quoted;
    for (std::size_t start = cell.find('`'); start != std::string::npos;) {
        const std::size_t end = cell.find('`', start + 1);
        quoted.push_back(cell.substr(start + 1, end - start - 1));
        start = cell.find('`', end + 1);
    }
    return quoted;
}

std::vector<Row> rows() {
    std::ifstream page(TARNWICK_LANGUAGE_PAGE);
    std::vector<Row> rows;
    for (std::string line; std::getline(page, line);)
        if (const auto found = cells(line);
            found.size() >= 4 && (found[2] == " yes " || found[2] == " no "))
            rows.push_back({found[0], found[2] == " yes ", quotations(found[3])});
    return rows;
}

// The functions that a page names: in the first cells of its table, and in backticks.
struct NamedFunctions {
    std::set<std::string> there;   // "sin", "precise::sin"
    std::set<std::string> missing; // those of the paragraph that begins with "Missing:"
};

NamedFunctions namedFunctions() {
    const std::regex cell(R"(^\| ((?:precise::)?[a-z]\w+))"), name(R"(`([a-z]\w+)`)");
    std::ifstream page(TARNWICK_LIBRARY_PAGE);
    NamedFunctions functions;
    bool isOfMissing = false;
    for (std::string line; std::getline(page, line);) {
        isOfMissing = line.starts_with("Missing:") || (isOfMissing && !line.empty());
        if (std::smatch match; std::regex_search(line, match, cell) && match[1] != "function")
            functions.there.insert(match[1]);
        for (std::sregex_iterator match(line.begin(), line.end(), name), end; match != end; ++match)
            (isOfMissing ? functions.missing : functions.there).insert((*match)[1]);
    }
    return functions;
}

// A program that is in order where the standard library has the function.
std::string mention(const std::string& function) {
    std::string space = function;
    std::ranges::replace(space, ':', '_');
    return "namespace mention_" + space + " { using metal::" + function + "; }\n";
}

} // namespace

TEST(LanguagePage, namesEveryProgramOfTheCorpusAndNoOther) {
    std::set<std::string> named, programs;
    for (const Row& row : rows()) {
        EXPECT_FALSE(row.quoted.empty()) << row.feature;
        if (row.isThere)
            named.insert(row.quoted.begin(), row.quoted.end());
    }
    for (const auto& entry : std::filesystem::directory_iterator(TARNWICK_CORPUS))
        programs.insert(entry.path().stem());
    EXPECT_EQ(named, programs);
}

TEST(LanguagePage, saysWhatTheCompilerSaysOfWhatIsMissing) {
    for (const Row& row : rows()) {
        if (row.isThere)
            continue;
        ASSERT_EQ(row.quoted.size(), 2u) << row.feature;
        const msl::Compilation found = msl::compile(
            "#include <metal_stdlib>\nusing namespace metal;\n" + row.quoted[0] + "\n");
        EXPECT_TRUE(found.failed) << row.feature;
        const std::size_t end = found.messages.find('\n');
        const std::string first = found.messages.substr(0, end);
        EXPECT_TRUE(first.starts_with("program_source:3:")) << row.feature << "\n"
                                                            << found.messages;
        EXPECT_TRUE(first.ends_with(": error: " + row.quoted[1])) << row.feature << "\n" << first;
    }
}

TEST(LibraryPage, namesFunctionsThatAreThereAndThoseThatAreMissing) {
    const NamedFunctions functions = namedFunctions();
    EXPECT_GT(functions.there.size(), 120u);
    EXPECT_FALSE(functions.missing.empty());
    std::string program = "#include <metal_stdlib>\n";
    for (const std::string& function : functions.there)
        program += mention(function);
    const msl::Compilation found = msl::compile(program);
    EXPECT_FALSE(found.failed) << found.messages;
    for (const std::string& function : functions.missing)
        EXPECT_TRUE(msl::compile("#include <metal_stdlib>\n" + mention(function)).failed)
            << function;
}

} // namespace tarnwick
