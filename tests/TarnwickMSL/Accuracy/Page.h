// The tables of docs/accuracy.md.
#pragma once

#include "tests/TarnwickMSL/Accuracy/Measure.h"

#include <map>
#include <string>

namespace tarnwick::trials {

// The row of a sweep: "| name | granted | native | at | device | at | outside |".
std::string pageRow(const Sweep& sweep, const Measurement& measurement);

// The lines before the tables.
inline constexpr const char* accuracyMark = "<!-- written by library-accuracy -->\n";
inline constexpr const char* differencesMark =
    "<!-- written by library-accuracy --differences -->\n";

// The text between a mark and the next end. Throws std::runtime_error without such a mark.
std::string tableOf(const std::string& page, const char* mark);
// The page with another text there.
std::string withTable(const std::string& page, const char* mark, const std::string& table);

// The rows of a table, by the names of their sweeps.
std::map<std::string, std::string> pageRows(const std::string& table);
// The cells of a row, without spaces at their ends.
std::vector<std::string> pageCells(const std::string& row);

} // namespace tarnwick::trials
