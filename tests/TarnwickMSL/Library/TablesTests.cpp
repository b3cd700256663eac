// Every function that the standard library declares is tested: those of its list by a row of the
// cases, the others by a row or by a program of the corpus.
#include "TarnwickMSL/Library/functions/list.h"
#include "TarnwickMSL/Translation/FrontEnd.h"
#include "tests/TarnwickMSL/Library/Cases.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace tarnwick::trials {

namespace {

using Names = std::set<std::string>;

// The rows of the list begin with 0 to 3 types before the name.
#define NAME(name, ...) #name,
#define AFTER_1(T, name, ...) #name,
#define AFTER_2(R, T, name, ...) #name,
#define AFTER_3(R, T, A, name, ...) #name,

const Names sameInPreciseMath = {MSL_COMMON_FUNCTIONS(AFTER_1, T) MSL_LANE_FUNCTIONS(
    AFTER_3, T) MSL_GEOMETRIC_FUNCTIONS(AFTER_2, T, E) MSL_RELATIONAL_FUNCTIONS(AFTER_2, T, I, B)};
const Names otherInPreciseMath = {MSL_MATH_FUNCTIONS(AFTER_1, T, I) MSL_CORE_FUNCTIONS(NAME)};
const Names ofIntegers = {
    MSL_INTEGER_SCALAR_FUNCTIONS(AFTER_2, T, U, W) MSL_INTEGER_VECTOR_FUNCTIONS(AFTER_2, T, U, W)
        MSL_INTEGER_FUNCTIONS(AFTER_2, T) MSL_INTEGER_LANE_FUNCTIONS(AFTER_1, T, U, W)
            MSL_24_BIT_FUNCTIONS(AFTER_2, T)};

std::string textOf(const std::vector<Case>& cases) {
    std::string text;
    for (const Case& row : cases)
        text += row.body + '\n';
    return text;
}

std::string textOf(const std::vector<std::string>& calls) {
    std::string text;
    for (const std::string& call : calls)
        text += call + '\n';
    return text;
}

std::string corpus() {
    std::string text;
    for (const auto& entry : std::filesystem::directory_iterator(TARNWICK_CORPUS)) {
        std::ifstream file(entry.path());
        text.append(std::istreambuf_iterator<char>(file), {});
    }
    return text;
}

// Whether the text has `name(` or, of a template, `name<`.
bool isCalled(const std::string& name, const std::string& text) {
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        const bool isWhole = at == 0 || !(std::isalnum(static_cast<unsigned char>(text[at - 1])) ||
                                          text[at - 1] == '_');
        if (isWhole && end < text.size() && (text[end] == '(' || text[end] == '<'))
            return true;
    }
    return false;
}

void expectRows(const Names& names, const std::string& space, const char* where,
                const std::string& text) {
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names)
        EXPECT_TRUE(isCalled(space + name, text))
            << space << name << " has no row in " << where << " (tests/TarnwickMSL/Library)";
}

} // namespace

TEST(LibraryTables, haveARowForEveryFunctionOfTheList) {
    const std::string common = textOf(commonCases()) + textOf(geometricCases());
    expectRows(sameInPreciseMath, "", "commonCases or geometricCases", common);
    expectRows(otherInPreciseMath, "", "fastCases", textOf(fastCases()));
    expectRows(otherInPreciseMath, "precise::", "preciseCases", textOf(preciseCases()));
    expectRows(otherInPreciseMath, "", "halfCases", textOf(halfCases()));
    expectRows(ofIntegers, "", "the rows of IntegerTests.cpp", textOf(integerCalls()));
}

TEST(LibraryTables, orACorpusProgramCallEveryOtherFunction) {
    const std::string text =
        textOf(commonCases()) + textOf(geometricCases()) + textOf(integerCalls()) + corpus();
    Names others;
    for (const std::string& declared : msl::StandardLibrary::functions()) {
        const std::string qualified = declared.substr(0, declared.find(": "));
        const std::string name = qualified.substr(qualified.rfind(':') + 1);
        if (!sameInPreciseMath.contains(name) && !otherInPreciseMath.contains(name) &&
            !ofIntegers.contains(name))
            others.insert(name);
    }
    EXPECT_GT(others.size(), 100u);
    for (const std::string& name : others)
        EXPECT_TRUE(isCalled(name, text))
            << name << " is called by no row of the cases and by no program of the corpus";
}

} // namespace tarnwick::trials
