#include "programs/Terminal/Excerpt.h"

#include "TarnwickCore/Findings/Words.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/TerminalText.h"

#include <algorithm>
#include <vector>

namespace tarnwick {
namespace {

constexpr std::size_t mostCells = 110, mostCellsBefore = 70; // of the shown part of a line

constexpr std::size_t mostBytes = 1000; // read before and after the mark

// The bytes of a line near `at`, in whole characters.
struct Near {
    std::string_view before, behind;
};

bool continuesCharacter(char one) {
    return (static_cast<unsigned char>(one) & 0xc0) == 0x80;
}

Near near(std::string_view line, std::size_t at) {
    std::size_t start = at > mostBytes ? at - mostBytes : 0;
    while (start < at && continuesCharacter(line[start]))
        ++start;
    std::size_t end = std::min(line.size(), at + mostBytes);
    while (end > at && end < line.size() && continuesCharacter(line[end]))
        --end;
    return {line.substr(start, at - start), line.substr(at, end - at)};
}

struct Shown {
    std::string text;
    std::size_t cells;
};

void append(std::vector<Shown>& line, std::string_view text) {
    std::size_t cells = 0;
    for (const Shown& shown : line)
        cells += shown.cells;
    for (const std::string& character : charactersOf(text)) {
        Shown shown{terminalText(character), static_cast<std::size_t>(cellsOf(character))};
        if (character == "\t")
            shown = {std::string(4 - cells % 4, ' '), 4 - cells % 4};
        else if (shown.text != character)
            shown.cells = shown.text.size(); // question marks
        cells += shown.cells;
        line.push_back(std::move(shown));
    }
}

std::size_t cellsBetween(const std::vector<Shown>& line, std::size_t start, std::size_t end) {
    std::size_t cells = 0;
    for (std::size_t at = start; at < end; ++at)
        cells += line[at].cells;
    return cells;
}

// The shown part of a line, and the number of its cells before the mark.
struct Part {
    std::string text;
    std::size_t before = 0;
};

Part partAround(const std::vector<Shown>& line, std::size_t mark) {
    std::size_t start = 0, end = line.size();
    while (cellsBetween(line, start, mark) > mostCellsBefore)
        ++start;
    while (end > mark && cellsBetween(line, start, end) > mostCells)
        --end;
    Part part{start > 0 ? "…" : "", start > 0 ? 1u : 0u};
    part.before += cellsBetween(line, start, mark);
    for (std::size_t at = start; at < end; ++at)
        part.text += line[at].text;
    return {part.text + (end < line.size() ? "…" : ""), part.before};
}

std::string gutter(const std::string& number) {
    constexpr std::size_t width = 5;
    return std::string(width - std::min(width, number.size()), ' ') + number + " | ";
}

} // namespace

std::string excerpt(std::string_view line, std::int64_t number, std::int64_t column,
                    Colours colours) {
    const bool hasMark = column >= 1 && static_cast<std::size_t>(column) <= line.size() + 1;
    const std::size_t at = hasMark ? static_cast<std::size_t>(column) - 1 : 0;
    std::vector<Shown> shown;
    const auto [before, behind] = near(line, at);
    append(shown, before);
    const std::size_t mark = shown.size();
    append(shown, behind);
    const Part part = partAround(shown, mark);
    std::string text = gutter(std::to_string(number)) + part.text + "\n";
    if (!hasMark)
        return text;
    const std::size_t length = std::max<std::size_t>(wordAt(behind, 0).size(), 1);
    return text + gutter("") + std::string(part.before, ' ') +
           styled("^" + std::string(std::min(length, mostCells) - 1, '~'), "1;32", colours) + "\n";
}

} // namespace tarnwick
