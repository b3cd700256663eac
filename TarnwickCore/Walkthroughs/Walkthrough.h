// An episode explained by the steps that led to it: what each version of it adds, in pages.
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
        added,   // this stage introduced it
        context, // unchanged, beside an added one
        gap,     // stands for unchanged lines that are not shown
        blank,   // between two blocks of a page
    };

    std::string text; // the line's code; "⋯" for a gap, empty for a blank
    Kind kind = Kind::added;

    bool operator==(const WalkthroughLine&) const = default;
};

struct WalkthroughPage {
    std::vector<WalkthroughLine> lines;
    std::string caption; // what the comments of the added lines say; may be empty

    bool operator==(const WalkthroughPage&) const = default;
};

struct WalkthroughStage {
    std::int64_t number = 1; // from 1
    std::string title;
    std::string summary;
    std::vector<WalkthroughPage> pages; // none where the stage adds no line

    bool operator==(const WalkthroughStage&) const = default;
};

struct Walkthrough {
    struct SourceLine {
        std::string code;    // without comments, and without blanks at its end
        std::string comment; // what is said about it, on one line; may be empty

        bool operator==(const SourceLine&) const = default;
    };

    struct ParsedSource {
        std::string title;
        std::string summary;
        std::vector<SourceLine> lines;

        bool operator==(const ParsedSource&) const = default;
    };

    // The stages of `stageSources`, in order, and then of the episode itself, whose title and
    // summary are the closing ones of `meta`. `capacity` is the most lines that fit on a page; what
    // is below 1 counts as 1. Any bytes are taken: what is not UTF-8 comes back as U+FFFD.
    static std::vector<WalkthroughStage> stages(std::string_view episode, const EpisodeMeta& meta,
                                                std::span<const std::string> stageSources,
                                                std::int64_t capacity);
    // The same of sources that are parsed already.
    static std::vector<WalkthroughStage> stages(const ParsedSource& episode,
                                                const EpisodeMeta& meta,
                                                std::span<const ParsedSource> stageSources,
                                                std::int64_t capacity);

    // One stage's source (WalkthroughSource.cpp).
    //
    // The first line of text among the comments that the source begins with is the title. Those of
    // the same block that follow it, up to a comment line without text or the block's end, are the
    // summary, joined by blanks. They explain the stage, so no line of code has them as its own.
    //
    // A comment beside code belongs to that line; comment lines directly above a line of code
    // belong to it too and come first. Lines that hold nothing but comments are not among `lines`,
    // so they part no block of code; a line without anything is, with empty code. A comment line
    // without a letter or a digit, such as a rule of dashes, has no text.
    //
    // A line `// @key ...` is a directive, not a comment. One that shapes the program (@param,
    // @particles, @grid) is code: that a stage adds a slider is worth showing. The others, which
    // file the episode, are passed over as if they were not there.
    //
    // Lines end at every break that Unicode knows, CR LF being one. What is comment and what is
    // code is told as the compiler tells it (C++20, 5.2, 5.7): by comment marks outside of strings
    // and characters; a // comment ends at LF or CR alone, and not at one behind a backslash.
    static ParsedSource parsed(std::string_view source);
};

} // namespace tarnwick
