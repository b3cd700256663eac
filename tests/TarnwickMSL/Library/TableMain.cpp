// library-table FILE: measures every function on the first device and writes the table between
// the marks of FILE (docs/library.md).
#include "tests/TarnwickMSL/Library/Machine.h"

#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>

namespace {

using namespace tarnwick::trials;

constexpr const char* beginning = "<!-- written by library-table -->\n";
constexpr const char* ending = "<!-- end -->\n";

std::string measured(const Case& row, const Verdict& verdict) {
    char text[80];
    if (row.bound.absolute > 0)
        std::snprintf(text, sizeof text, "%.2g", verdict.worstAbsolute);
    else
        std::snprintf(text, sizeof text, "%.2f ulp", verdict.worstUlps);
    return text;
}

std::string table(Machine& machine) {
    std::string text =
        "Measured on " + machine.name() +
        ", 120,000 arguments a row (each half for functions of half).\n\n"
        "| function | lowering | granted | worst error | outside |\n|---|---|---|---|---|\n";
    const std::array widths{1, 2, 3, 4};
    for (const auto& cases :
         {fastCases(), commonCases(), geometricCases(), preciseCases(), halfCases()})
        machine.judgeAll(cases, 120000, widths, [&](const Case& row, const Verdict& verdict) {
            text += "| " + row.name + " | " + row.lowering + " | " + row.bound.text + " | " +
                    measured(row, verdict) + " | " + std::to_string(verdict.misses) + " |\n";
        });
    return text;
}

int write(const char* path) {
    std::ifstream file(path);
    std::stringstream content;
    content << file.rdbuf();
    std::string page = content.str();
    const std::size_t from = page.find(beginning), to = page.find(ending);
    if (from == std::string::npos || to == std::string::npos || to < from) {
        std::cerr << path << " has no marks for the table.\n";
        return 1;
    }
    const auto machine = Machine::make();
    if (!machine) {
        std::cerr << "There is no device.\n";
        return 1;
    }
    const std::size_t start = from + std::string(beginning).size();
    page.replace(start, to - start, table(*machine));
    std::ofstream(path) << page;
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: library-table FILE\n";
        return 2;
    }
    try {
        return write(arguments[1]);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
