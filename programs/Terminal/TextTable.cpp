#include "programs/Terminal/TextTable.h"

#include <algorithm>
#include <cstddef>

namespace tarnwick {

std::string textTable(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
    for (const auto& row : rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            text += row[column] + std::string(widths[column] - row[column].size() + 2, ' ');
        text.erase(text.find_last_not_of(' ') + 1);
        text += "\n";
    }
    return text;
}

} // namespace tarnwick
