#include "tests/TarnwickMSL/Accuracy/Page.h"

#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

constexpr const char* ending = "<!-- end -->\n";

// The place of the text after the mark.
std::pair<std::size_t, std::size_t> place(const std::string& page, const std::string& mark) {
    const std::size_t from = page.find(mark), last = page.find(ending, from);
    if (from == std::string::npos || last == std::string::npos)
        throw std::runtime_error("The page has no marks for the table.");
    return {from + mark.size(), last};
}

// The largest error and its argument, as two cells.
std::string worstCells(const std::optional<Judge>& judge) {
    if (!judge)
        return "| |";
    if (judge->worst() == 0)
        return " 0 | |";
    char text[96];
    std::snprintf(text, sizeof text, judge->isAbsolute() ? "%.2g | %.6a |" : "%.2f ulp | %.6a |",
                  judge->worst(), static_cast<double>(judge->worstAt()));
    return std::string(" ") + text;
}

std::string deviceCells(const Measurement& measurement) {
    if (measurement.device || measurement.compared == 0)
        return worstCells(measurement.device);
    if (measurement.different == 0)
        return " as native | |";
    return " " + std::to_string(measurement.different) + " of " +
           std::to_string(measurement.compared) + " differ | |";
}

} // namespace

std::string pageRow(const Sweep& sweep, const Measurement& measurement) {
    const Judge& judge = measurement.native ? *measurement.native : *measurement.device;
    return "| " + sweep.name + " | " + sweep.row.bound.text + " |" +
           worstCells(measurement.native) + deviceCells(measurement) + " " +
           std::to_string(judge.misses()) + " |";
}

std::string tableOf(const std::string& page, const char* mark) {
    const auto [first, last] = place(page, mark);
    return page.substr(first, last - first);
}

std::string withTable(const std::string& page, const char* mark, const std::string& table) {
    const auto [first, last] = place(page, mark);
    return page.substr(0, first) + table + page.substr(last);
}

std::vector<std::string> pageCells(const std::string& row) {
    std::vector<std::string> cells(1);
    for (std::size_t i = 1; i < row.size(); i++)
        if (row[i] == '|' && row[i - 1] != '\\')
            cells.emplace_back();
        else
            cells.back() += row[i];
    cells.pop_back();
    for (std::string& cell : cells) {
        const std::size_t first = cell.find_first_not_of(' ');
        cell = first == std::string::npos
                   ? ""
                   : cell.substr(first, cell.find_last_not_of(' ') + 1 - first);
    }
    return cells;
}

std::map<std::string, std::string> pageRows(const std::string& table) {
    std::map<std::string, std::string> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);)
        if (const auto cells =
                line.starts_with("| ") ? pageCells(line) : std::vector<std::string>{};
            cells.size() == 7)
            rows[cells[0]] = line;
    return rows;
}

} // namespace tarnwick::trials
