// library-accuracy PAGE [NAME...]: runs the functions of one float over all their arguments and
// writes their rows of the page (docs/accuracy.md). With names, only the functions whose name
// contains one of them; the other rows stay.
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
    const std::string page = withTable(readFile(path), table);
    std::ofstream(path) << page;
}

bool isChosen(const Sweep& sweep, std::span<char*> names) {
    return names.empty() || std::ranges::any_of(names, [&](const char* name) {
               return sweep.name.find(name) != std::string::npos;
           });
}

void measureAll(const char* path, std::span<char*> names) {
    const auto machine = Machine::make();
    if (!machine)
        throw std::runtime_error("There is no device.");
    const std::vector<Sweep> all = sweeps();
    auto rows = pageRows(tableOf(readFile(path)));
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
        std::cerr << "usage: library-accuracy PAGE [NAME...]\n";
        return 2;
    }
    try {
        measureAll(arguments[1], std::span(arguments + 2, static_cast<std::size_t>(count - 2)));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
