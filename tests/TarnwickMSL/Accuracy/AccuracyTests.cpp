// docs/accuracy.md has a row for every function of one float, with the bounds of the library's
// cases, and its figures hold for a sample that is measured here.
#include "TarnwickMSL/Library/functions/list.h"
#include "tests/TarnwickMSL/Accuracy/Differences.h"
#include "tests/TarnwickMSL/Accuracy/Page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <fstream>
#include <iterator>

namespace tarnwick::trials {

namespace {

std::string page() {
    std::ifstream file(TARNWICK_ACCURACY_PAGE);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::map<std::string, std::string> rowsOfThePage() {
    return pageRows(tableOf(page(), accuracyMark));
}

// The functions of the list that take one number, and those with a second result.
#define OF_ONE(name, arguments) ofOne(#name, #arguments)
#define AFTER_1(T, name, arguments, ...) OF_ONE(name, arguments),
#define AFTER_2(R, T, name, arguments, ...) OF_ONE(name, arguments),
#define AFTER_3(R, T, A, name, arguments, ...) OF_ONE(name, arguments),
#define AFTER_0(name, arguments, ...) OF_ONE(name, arguments),
std::string ofOne(const std::string& name, const std::string& arguments) {
    return arguments == "1" || arguments == "out" ? name : "";
}

void expectRows(const std::vector<std::string>& names, const std::string& space) {
    const auto rows = rowsOfThePage();
    for (const std::string& name : names) {
        const auto row = std::ranges::find_if(rows, [&](const auto& entry) {
            return entry.first == space + name || entry.first.starts_with(space + name + ",");
        });
        EXPECT_TRUE(name.empty() || row != rows.end()) << space << name << " has no row";
    }
}

double figure(const std::string& cell) {
    return cell.empty() ? 0 : std::stod(cell);
}

} // namespace

TEST(AccuracyPage, hasARowForEveryFunctionOfOneFloat) {
    const std::vector<std::string> same = {MSL_COMMON_FUNCTIONS(AFTER_1, T) MSL_LANE_FUNCTIONS(
        AFTER_3, T) MSL_RELATIONAL_FUNCTIONS(AFTER_2, T, I, B)};
    const std::vector<std::string> other = {MSL_MATH_FUNCTIONS(AFTER_1, T, I)
                                                MSL_CORE_FUNCTIONS(AFTER_0)};
    expectRows(same, "");
    expectRows(other, "");
    expectRows(other, "precise::");
}

TEST(AccuracyPage, statesTheBoundsAndFindsNothingOutside) {
    const auto rows = rowsOfThePage();
    for (const Sweep& sweep : sweeps()) {
        const auto row = rows.find(sweep.name);
        ASSERT_NE(row, rows.end()) << sweep.name << ": run library-accuracy docs/accuracy.md";
        const auto cells = pageCells(row->second);
        EXPECT_EQ(cells[1], sweep.row.bound.text) << sweep.name;
        EXPECT_EQ(cells[6], "0") << sweep.name;
    }
    EXPECT_EQ(rows.size(), sweeps().size() + 1); // and the heading
}

// Native code of the library, each 4099th run of 1,024 floats: about a million arguments.
TEST(AccuracyPage, boundsTheErrorsOfASample) {
    const auto rows = rowsOfThePage();
    for (const Sweep& sweep : sweeps()) {
        const auto row = rows.find(sweep.name);
        const auto found = measured({&sweep, 1}, {.length = 1024, .every = 4099}, nullptr);
        if (!found[0].native || row == rows.end())
            continue;
        const Judge& judge = *found[0].native;
        EXPECT_EQ(judge.misses(), 0u)
            << sweep.name << "(" << static_cast<double>(judge.firstMiss()) << ")";
        EXPECT_LE(judge.worst(), figure(pageCells(row->second)[2]) * 1.01 + 0.005)
            << sweep.name << "(" << static_cast<double>(judge.worstAt()) << ")";
    }
}

// The reference in double against long double, whose functions are others: within 2^-12 of a unit
// of float. (The reduction of half turns in long double loses digits near their zeros.)
TEST(Truth, agreesWithLongDouble) {
    constexpr std::size_t count = 1024, every = 4099;
    for (const Sweep& sweep : sweeps())
        for (std::size_t part = 0; part < 4; part++) {
            std::vector<float> x(count);
            std::vector<double> wanted(count);
            for (std::size_t i = 0; i < count; i++)
                if (x[i] = std::bit_cast<float>(
                        static_cast<std::uint32_t>((part << 30) + i * every * 255));
                    !std::isfinite(x[i]))
                    x[i] = 1;
            sweep.truth(x.data(), wanted.data(), count);
            for (std::size_t i = 0; i < count; i++) {
                const long double exact = sweep.row.reference(static_cast<long double>(x[i]), 0, 0);
                const bool isFloat = std::isnormal(x[i]) && std::fabs(exact) >= 0x1p-126L &&
                                     std::fabs(exact) < 0x1p128L;
                if (x[i] >= sweep.low && x[i] <= sweep.high && isFloat) {
                    ASSERT_LE(std::fabs(static_cast<long double>(wanted[i]) - exact),
                              std::fabs(exact) * 0x1p-36L)
                        << sweep.name << "(" << static_cast<double>(x[i]) << ")";
                }
            }
        }
}

TEST(FastMath, differsFromPreciseMathAsThePageSays) {
    const auto machine = Machine::make();
    if (!machine)
        GTEST_SKIP() << "No Vulkan device is here.";
    const auto found = differences(*machine);
    for (const Difference& row : found) {
        const double unit = std::ldexp(1.0, std::ilogb(row.exact) - 23);
        EXPECT_LE(std::fabs(static_cast<double>(row.inPrecise) - row.exact),
                  row.precise.bound.ulps * unit)
            << row.call;
        EXPECT_NE(std::bit_cast<std::uint32_t>(row.inPrecise),
                  std::bit_cast<std::uint32_t>(row.inFast))
            << row.call;
    }
    if (machine->name().starts_with("llvmpipe")) {
        EXPECT_EQ(tableOf(page(), differencesMark), differencesTable(found))
            << "Run library-accuracy docs/accuracy.md --differences.";
    }
}

} // namespace tarnwick::trials
