#include "TarnwickCore/Forking.h"

#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>

namespace tarnwick {

std::optional<std::string> ForkedFrom::parse(std::string_view source) {
    static const Pattern pattern(R"(^\s*//\s*@forked-from\s+(\S+)\s*$)");
    for (const std::string_view line : linesOf(source)) {
        if (line.find("@forked-from") == std::string_view::npos)
            continue; // faster than the expression
        const auto groups = pattern.firstMatch(line);
        if (groups && isValid((*groups)[1]))
            return std::string((*groups)[1]);
    }
    return std::nullopt;
}

bool ForkedFrom::isValid(std::string_view item) {
    static const Pattern pattern(
        R"(\A(episode-[0-9]{2,3}(/[a-z0-9][a-z0-9-]{0,63})?|s/[a-z0-9]{1,32})\z)");
    return pattern.matchesIn(item);
}

std::string ForkedFrom::insert(std::string_view item, std::string_view source) {
    std::string text(source);
    if (isValid(item) && !parse(source))
        text.insert(0, "// @forked-from " + std::string(item) + "\n");
    return text;
}

std::optional<std::string> ForkedFrom::item(std::string_view bundledFile) {
    const auto end = std::ranges::find_if(bundledFile, [](char c) { return c < '0' || c > '9'; });
    const std::string_view digits(bundledFile.begin(), end);
    if (digits.size() < 2 || digits.size() > 3)
        return std::nullopt;
    return episodeItem(digits);
}

std::string ForkedFrom::episodeItem(std::string_view digits) {
    const std::string number = std::to_string(integerOf(digits).value_or(0));
    return "episode-" + std::string(number.size() < 2 ? 1 : 0, '0') + number;
}

} // namespace tarnwick
