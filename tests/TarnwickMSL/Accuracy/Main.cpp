// library-accuracy PAGE [NAME...]: runs the functions of one float over all their arguments and
// writes their rows of the page (docs/accuracy.md). With names ("sin", "sincos"), only these
// functions, in both maths; the other rows stay. With --differences, writes the table of the
// differences of fast and precise math instead.
#include "tests/TarnwickMSL/Accuracy/Differences.h"
#include "tests/TarnwickMSL/Accuracy/Page.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>

namespace {

using namespace tarnwick::trials;

constexpr const char* heading =
    "| function | granted | native | at | device | at | outside |\n|---|---|---|---|---|---|---|\n";

std::string readFile(const char* path) {
    std::ifstream file(path);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

// Writes the rows in the order of the sweeps.
void writeRows(const char* path, const std::vector<Sweep>& all,
               const std::map<std::string, std::string>& rows) {
    std::string table = heading;
    for (const Sweep& sweep : all)
        if (const auto row = rows.find(sweep.name); row != rows.end())
            table += row->second + "\n";
    const std::string page = withTable(readFile(path), accuracyMark, table);
    std::ofstream(path) << page;
}

// The function of "precise::sincos, sine" is "sincos".
std::string functionOf(const Sweep& sweep) {
    const std::string name = sweep.name.substr(0, sweep.name.find(','));
    const std::string space = "precise::";
    return name.starts_with(space) ? name.substr(space.size()) : name;
}

bool isChosen(const Sweep& sweep, std::span<char*> names) {
    return names.empty() || std::ranges::find(names, functionOf(sweep)) != names.end();
}

std::unique_ptr<Machine> anyMachine() {
    auto machine = Machine::make();
    if (!machine)
        throw std::runtime_error("There is no device.");
    return machine;
}

void writeDifferences(const char* path) {
    const std::string table = differencesTable(differences(*anyMachine()));
    std::cout << table;
    const std::string page = withTable(readFile(path), differencesMark, table);
    std::ofstream(path) << page;
}

void measureAll(const char* path, std::span<char*> names) {
    const auto machine = anyMachine();
    const std::vector<Sweep> all = sweeps();
    auto rows = pageRows(tableOf(readFile(path), accuracyMark));
    for (std::size_t from = 0; from < all.size();) {
        std::size_t to = from;
        std::vector<Sweep> group;
        for (; to < all.size() && all[to].truth == all[from].truth; to++)
            if (isChosen(all[to], names))
                group.push_back(all[to]);
        from = to;
        if (group.empty())
            continue;
        const std::vector<Measurement> found = measured(group, {}, machine.get());
        for (std::size_t i = 0; i < group.size(); i++) {
            rows[group[i].name] = pageRow(group[i], found[i]);
            std::cout << rows[group[i].name] << std::endl;
        }
        writeRows(path, all, rows);
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "usage: library-accuracy PAGE [--differences | NAME...]\n";
        return 2;
    }
    try {
        const std::span names(arguments + 2, static_cast<std::size_t>(count - 2));
        if (names.size() == 1 && std::string(names[0]) == "--differences")
            writeDifferences(arguments[1]);
        else
            measureAll(arguments[1], names);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
