#include "tests/handbook/Accuracy.h"

#include "tests/handbook/WrittenPart.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace tarnwick {
namespace {

constexpr std::string_view half = " (half)";

std::string trimmed(const std::string& cell) {
    const std::size_t first = cell.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : cell.substr(first, cell.find_last_not_of(' ') + 1 - first);
}

// The cells of a row of a table; "\|" is not the end of one.
std::vector<std::string> cellsOf(const std::string& row) {
    std::vector<std::string> cells(1);
    for (std::size_t at = 1; at < row.size(); ++at)
        if (row[at] == '|' && row[at - 1] != '\\')
            cells.emplace_back();
        else
            cells.back() += row[at];
    cells.pop_back();
    std::ranges::transform(cells, cells.begin(), trimmed);
    return cells;
}

bool isError(const std::string& cell) {
    return !cell.empty() && (cell[0] >= '0' && cell[0] <= '9') &&
           cell.find("differ") == std::string::npos;
}

// Adds a row that is named "precise::exp, [-1, 1]", "sincos, sine (half)" or "determinant of 4 x
// 4". Rows of calls, "max(0, x)", repeat functions with other types.
void add(std::map<std::string, Accuracy>& found, std::string name, MeasuredError error,
         bool isOfAllArguments) {
    const bool isHalf = name.ends_with(half);
    if (isHalf)
        name.erase(name.size() - half.size());
    const std::size_t comma = std::min(name.find(", "), name.find(" of "));
    if (comma != std::string::npos) {
        error.of = name.substr(name.find(' ', comma + (name[comma] == ',' ? 0 : 1)) + 1);
        name.erase(comma);
    }
    if (name.find_first_of("(/") != std::string::npos)
        return;
    Accuracy& accuracy = found[name + (isHalf ? std::string(half) : "")];
    if (isOfAllArguments || !accuracy.isOfAllArguments)
        accuracy.errors.push_back(std::move(error));
    accuracy.isOfAllArguments |= isOfAllArguments;
}

// The rows of a page's tables with that many columns.
std::vector<std::vector<std::string>> rowsOf(const std::string& page, std::size_t columns) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(pageText(page));
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("| "))
            if (std::vector<std::string> cells = cellsOf(line); cells.size() == columns)
                rows.push_back(std::move(cells));
    return rows;
}

std::string textOf(const MeasuredError& error) {
    const std::string of = error.of.empty() ? "" : " (" + error.of + ")";
    if (error.granted == "exact" || error.granted == "correctly rounded")
        return error.granted + of;
    return error.worst + of + ", granted: " + error.granted;
}

std::string textOf(const Accuracy& accuracy) {
    std::vector<std::string> texts;
    for (const MeasuredError& error : accuracy.errors)
        if (const std::string text = textOf(error); !std::ranges::count(texts, text))
            texts.push_back(text);
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : "; ") + text;
    return all;
}

} // namespace

std::map<std::string, Accuracy> measuredAccuracy() {
    std::map<std::string, Accuracy> found;
    for (const auto& row : rowsOf("accuracy.md", 7)) // name, granted, native, at, device, ...
        if (const std::string worst = isError(row[4]) ? row[4] : row[2]; isError(worst))
            add(found, row[0], {.of = {}, .worst = worst, .granted = row[1]}, true);
    for (const auto& row : rowsOf("library.md", 5)) // name, lowering, granted, worst, outside
        if (isError(row[3]))
            add(found, row[0], {.of = {}, .worst = row[3], .granted = row[2]}, false);
    return found;
}

std::string accuracyText(const std::map<std::string, Accuracy>& measured, const std::string& name) {
    const auto textFor = [&](const std::string& key) {
        const auto found = measured.find(key);
        return found == measured.end() ? "" : textOf(found->second);
    };
    const std::string fast = textFor(name), precise = textFor("precise::" + name),
                      ofHalf = textFor(name + std::string(half));
    std::vector<std::pair<std::string, std::string>> kinds;
    if (precise.empty() || precise == fast)
        kinds = {{"float", fast}};
    else
        kinds = {{"fast math", fast}, {"precise math", precise}};
    if (ofHalf != fast)
        kinds.emplace_back("half", ofHalf);
    std::erase_if(kinds, [](const auto& kind) { return kind.second.empty(); });
    if (kinds.size() < 2)
        return kinds.empty() ? "" : "Largest error: " + kinds[0].second + "\n";
    std::string text = "Largest error:\n\n";
    for (const auto& [kind, errors] : kinds)
        text += "- " + kind + ": " + errors + "\n";
    return text;
}

} // namespace tarnwick
