#include "programs/Movies/ChapterList.h"

#include "TarnwickCore/Movies/VideoChapters.h"
#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/CommandLine/SourceFile.h"

#include <algorithm>

namespace tarnwick {

std::vector<MovieChapter> chapterListAt(std::string_view file) {
    std::vector<MovieChapter> chapters;
    if (file.empty())
        return chapters;
    try {
        for (const VideoChapters::Chapter& chapter :
             VideoChapters::decode(sourceText(file)).chapters)
            chapters.push_back({.start = chapter.at, .title = chapter.title});
    } catch (const VideoChaptersError& error) {
        misuse(std::string(file) + " holds no chapters: " + error.what());
    }
    std::ranges::stable_sort(chapters, {}, &MovieChapter::start);
    return chapters;
}

void checkChapters(const std::vector<MovieChapter>& chapters, double duration) {
    for (const MovieChapter& chapter : chapters)
        if (!(chapter.start >= 0 && chapter.start < duration))
            misuse("The chapter \"" + chapter.title + "\" starts at " + shortest(chapter.start) +
                   " s, outside the movie of " + shortest(duration) + " s.");
}

} // namespace tarnwick
