// The chapters of a movie, from a file that the command line names.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"

#include <string_view>
#include <vector>

namespace tarnwick {

// The list in `file`, in the form of VideoChapters::json(), in the order of the chapters' starts;
// "" is no list. Throws CommandError if it cannot be read.
std::vector<MovieChapter> chapterListAt(std::string_view file);

// Throws CommandError if a chapter starts before 0 s, or not before the end of a movie of
// `duration` seconds.
void checkChapters(const std::vector<MovieChapter>& chapters, double duration);

} // namespace tarnwick
