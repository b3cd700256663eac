// An episode explained by the versions that led to it: the lines that each version adds, in pages.
#pragma once

#include "TarnwickCore/EpisodeMeta.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct WalkthroughLine {
    enum class Kind {
        added,   // new in this stage
        context, // unchanged, next to an added line
        gap,     // in place of unchanged lines that are not shown
        blank,   // between two blocks of a page
    };

    std::string text; // the line's code; "⋯" for a gap, empty for a blank
    Kind kind = Kind::added;

    bool operator==(const WalkthroughLine&) const = default;
};

struct WalkthroughPage {
    std::vector<WalkthroughLine> lines;
    std::string caption; // the comments of the added lines; may be empty

    bool operator==(const WalkthroughPage&) const = default;
};

struct WalkthroughStage {
    std::int64_t number = 1;            // from 1
    std::string title;                  // one line; may be empty
    std::string summary;                // one line; may be empty
    std::vector<WalkthroughPage> pages; // none if the stage adds no line

    bool operator==(const WalkthroughStage&) const = default;
};

struct Walkthrough {
    struct SourceLine {
        std::string code;    // without comments and trailing blanks
        std::string comment; // one line; may be empty

        bool operator==(const SourceLine&) const = default;
    };

    struct ParsedSource {
        std::string title;
        std::string summary;
        std::vector<SourceLine> lines;

        bool operator==(const ParsedSource&) const = default;
    };

    // The stages of `stageSources`, in order, followed by the episode itself, whose title and
    // summary are `finalTitle` and `finalSummary` of `meta`. `capacity` is the maximum number of
    // lines of a page; below 1: 1. Accepts any bytes; text that is not UTF-8 becomes U+FFFD.
    static std::vector<WalkthroughStage> stages(std::string_view episode, const EpisodeMeta& meta,
                                                std::span<const std::string> stageSources,
                                                std::int64_t capacity);
    // The same for parsed sources.
    static std::vector<WalkthroughStage> stages(const ParsedSource& episode,
                                                const EpisodeMeta& meta,
                                                std::span<const ParsedSource> stageSources,
                                                std::int64_t capacity);

    // Parses the source of one stage (WalkthroughSource.cpp).
    //
    // The title is the first line of text in the comments at the beginning of the source. The
    // summary is the rest of that block of comments, up to a comment line without text, joined by
    // blanks. Title and summary are not comments of a line of code.
    //
    // A comment beside code belongs to that line. Comment lines directly above a line of code
    // belong to it too and come first. Lines that hold only comments are not among `lines`, so they
    // do not divide blocks of code. Empty lines are among `lines`, with empty code. A comment line
    // without a letter or digit, such as a rule of dashes, has no text.
    //
    // A line `// @key ...` is a directive, not a comment. @param, @particles and @grid change the
    // program and are code, because an added slider is worth showing. All other directives are
    // ignored.
    //
    // Lines end at all line breaks of Unicode; CR LF is one. Comments are recognised as the
    // compiler does (C++20, 5.2, 5.7): by comment marks outside strings and characters. A //
    // comment ends only at LF or CR, and not after a backslash.
    static ParsedSource parsed(std::string_view source);
};

} // namespace tarnwick
