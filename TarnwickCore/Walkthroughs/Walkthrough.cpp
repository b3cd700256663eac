#include "TarnwickCore/Walkthroughs/Walkthrough.h"

#include "TarnwickCore/Text/Blanks.h"
#include "TarnwickCore/Text/Sentence.h"
#include "TarnwickCore/Walkthroughs/AddedLines.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

using Kind = WalkthroughLine::Kind;
using SourceLine = Walkthrough::SourceLine;

// A line of a page, and the comment that it adds to the caption.
struct Shown {
    WalkthroughLine line;
    std::string_view comment;
};

using Chunk = std::vector<Shown>;

// The lines with code, in the form in which they are compared.
std::vector<std::string_view> comparedLines(const std::vector<SourceLine>& lines) {
    std::vector<std::string_view> compared;
    for (const SourceLine& line : lines)
        if (!line.code.empty())
            compared.push_back(withoutBlanks(line.code));
    return compared;
}

// For each of `lines`, whether it is new. `previous` is null for the first stage.
std::vector<bool> addedMarks(const std::vector<SourceLine>& lines,
                             const std::vector<SourceLine>* previous) {
    const std::vector<std::string_view> current = comparedLines(lines);
    const std::vector<bool> added = previous ? addedLines(comparedLines(*previous), current)
                                             : std::vector<bool>(current.size(), true);
    std::vector<bool> marks;
    auto next = added.begin();
    for (const SourceLine& line : lines)
        marks.push_back(!line.code.empty() && *next++);
    return marks;
}

std::vector<Chunk> blocksOf(const std::vector<SourceLine>& lines, const std::vector<bool>& added) {
    std::vector<Chunk> blocks(1); // the last one is not complete
    bool hasSkipped = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const SourceLine& line = lines[i];
        const bool isBeside = (i > 0 && added[i - 1]) || (i + 1 < lines.size() && added[i + 1]);
        if (line.code.empty()) {
            blocks.resize(blocks.size() + (blocks.back().empty() ? 0 : 1));
            hasSkipped = false;
        } else if (!added[i] && !isBeside) {
            hasSkipped = true;
        } else {
            if (std::exchange(hasSkipped, false) && !blocks.back().empty())
                blocks.back().push_back({{"⋯", Kind::gap}, ""});
            blocks.back().push_back({{line.code, added[i] ? Kind::added : Kind::context},
                                     added[i] ? std::string_view(line.comment) : ""});
        }
    }
    if (blocks.back().empty())
        blocks.pop_back();
    return blocks;
}

std::string captionOf(const Chunk& lines) {
    std::vector<std::string_view> comments;
    std::string caption;
    for (const Shown& shown : lines) {
        if (shown.comment.empty() || std::ranges::find(comments, shown.comment) != comments.end())
            continue;
        comments.push_back(shown.comment);
        caption += (caption.empty() ? "" : " ") + sentence(shown.comment);
    }
    return caption;
}

WalkthroughPage pageOf(Chunk lines) {
    WalkthroughPage page{.caption = captionOf(lines)};
    for (Shown& shown : lines)
        page.lines.push_back(std::move(shown.line));
    return page;
}

// Divides blocks to at most `capacity` lines and fills pages with them, with a blank line between
// blocks.
std::vector<WalkthroughPage> pagesOf(const std::vector<Chunk>& blocks, std::size_t capacity) {
    std::vector<WalkthroughPage> pages;
    Chunk page;
    for (const Chunk& block : blocks)
        for (std::size_t start = 0; start < block.size(); start += capacity) {
            const std::size_t length = std::min(capacity, block.size() - start);
            if (page.size() + 1 + length > capacity && !page.empty())
                pages.push_back(pageOf(std::exchange(page, {})));
            if (!page.empty())
                page.push_back({{"", Kind::blank}, ""});
            page.insert(page.end(), block.begin() + static_cast<std::ptrdiff_t>(start),
                        block.begin() + static_cast<std::ptrdiff_t>(start + length));
        }
    if (!page.empty())
        pages.push_back(pageOf(std::move(page)));
    return pages;
}

WalkthroughStage stageOf(std::int64_t number, const Walkthrough::ParsedSource& source,
                         const Walkthrough::ParsedSource* previous, std::size_t capacity) {
    const std::vector<bool> added = addedMarks(source.lines, previous ? &previous->lines : nullptr);
    return {.number = number,
            .title = source.title.empty() ? "Stage " + std::to_string(number) : source.title,
            .summary = source.summary,
            .pages = pagesOf(blocksOf(source.lines, added), capacity)};
}

} // namespace

std::vector<WalkthroughStage> Walkthrough::stages(std::string_view episode, const EpisodeMeta& meta,
                                                  std::span<const std::string> stageSources,
                                                  std::int64_t capacity) {
    std::vector<ParsedSource> sources;
    for (const std::string& source : stageSources)
        sources.push_back(parsed(source));
    return stages(parsed(episode), meta, sources, capacity);
}

std::vector<WalkthroughStage> Walkthrough::stages(const ParsedSource& episode,
                                                  const EpisodeMeta& meta,
                                                  std::span<const ParsedSource> stageSources,
                                                  std::int64_t capacity) {
    const auto mostLines = static_cast<std::size_t>(std::max(capacity, std::int64_t{1}));
    std::vector<WalkthroughStage> stages;
    const ParsedSource* previous = nullptr;
    auto add = [&](const ParsedSource& source) {
        const auto number = static_cast<std::int64_t>(stages.size()) + 1;
        stages.push_back(stageOf(number, source, previous, mostLines));
        previous = &source;
    };
    std::ranges::for_each(stageSources, add);
    add(episode);
    stages.back().title = meta.finalTitle.empty() ? "The finished shader" : meta.finalTitle;
    stages.back().summary = meta.finalSummary;
    return stages;
}

} // namespace tarnwick
