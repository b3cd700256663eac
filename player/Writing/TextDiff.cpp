#include "player/Writing/TextDiff.h"

#include "TarnwickCore/Walkthroughs/AddedLines.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

std::vector<std::string_view> linesIn(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

} // namespace

std::vector<DiffLine> textDiff(std::string_view before, std::string_view after) {
    const std::vector<std::string_view> old = linesIn(before), now = linesIn(after);
    const std::vector<bool> isAdded = addedLines(old, now);
    std::vector<DiffLine> diff;
    std::size_t at = 0; // in the old lines
    for (std::size_t line = 0; line < now.size();) {
        std::size_t kept = line; // the next line that both have
        while (kept < now.size() && isAdded[kept])
            ++kept;
        for (; at < old.size() && (kept == now.size() || old[at] != now[kept]); ++at)
            diff.push_back({DiffLine::Kind::removed, at + 1, 0, old[at]});
        for (; line < kept; ++line)
            diff.push_back({DiffLine::Kind::added, 0, line + 1, now[line]});
        if (line < now.size()) {
            diff.push_back({DiffLine::Kind::same, at + 1, line + 1, now[line]});
            ++at;
            ++line;
        }
    }
    for (; at < old.size(); ++at)
        diff.push_back({DiffLine::Kind::removed, at + 1, 0, old[at]});
    return diff;
}

} // namespace tarnwick::player
