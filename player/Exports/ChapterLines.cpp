#include "player/Exports/ChapterLines.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr double longestTime = 24 * 3600; // seconds

std::vector<std::string_view> split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = std::min(text.find(at), text.size());
        parts.push_back(text.substr(0, end));
        if (end == text.size())
            return parts;
        text.remove_prefix(end + 1);
    }
}

bool isDigits(std::string_view text) {
    return !text.empty() && text.size() <= 6 &&
           std::ranges::all_of(text, [](char one) { return one >= '0' && one <= '9'; });
}

} // namespace

std::optional<double> clockSeconds(std::string_view text) {
    const std::vector<std::string_view> parts = split(text, ':');
    if (parts.size() > 3)
        return std::nullopt;
    double seconds = 0;
    for (std::size_t at = 0; at + 1 < parts.size(); ++at) {
        if (!isDigits(parts[at]))
            return std::nullopt;
        seconds = (seconds + doubleOf(parts[at]).value_or(0)) * 60;
    }
    const auto last = doubleOf(parts.back());
    if (!last || !std::isfinite(*last) || *last < 0 || (parts.size() > 1 && *last >= 60))
        return std::nullopt;
    seconds += *last;
    return seconds <= longestTime ? std::optional(seconds) : std::nullopt;
}

ChapterLines ChapterLines::read(std::string_view text, double duration) {
    ChapterLines read;
    for (const std::string_view whole : split(text, '\n')) {
        const std::string line(trimmed(whole));
        if (line.empty() || !read.error.empty())
            continue;
        const std::size_t gap = std::min(line.find_first_of(" \t"), line.size());
        const auto at = clockSeconds(std::string_view(line).substr(0, gap));
        const std::string title(trimmed(std::string_view(line).substr(gap)));
        if (!at || title.empty())
            read.error =
                "A chapter is a time and a title, such as \"1:05 Rings\", not \"" + line + "\".";
        else if (*at >= duration)
            read.error = "The chapter \"" + title + "\" starts after the end of the movie.";
        else
            read.chapters.push_back({.at = *at, .title = title});
    }
    std::ranges::stable_sort(read.chapters, {}, &VideoChapters::Chapter::at);
    return read;
}

} // namespace tarnwick::player
