#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickCore/Walkthroughs/WalkthroughTimeline.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

using Lines = std::vector<Walkthrough::SourceLine>;

// The pages of a stage that turns `before` into `after`, each as its lines after a mark of their
// kind.
std::vector<std::string> pages(const std::string& before, const std::string& after,
                               std::int64_t capacity = 10) {
    const std::string marks = "+ ~_"; // in the order of the kinds
    std::vector<std::string> all;
    const auto stages = Walkthrough::stages(after, {}, std::vector{before}, capacity);
    for (const WalkthroughPage& page : stages[1].pages) {
        std::string& text = all.emplace_back();
        for (const WalkthroughLine& line : page.lines)
            text += marks[static_cast<std::size_t>(line.kind)] + line.text + "|";
    }
    return all;
}

std::string caption(const std::string& source) {
    return Walkthrough::stages("", {}, std::vector{source}, 10)[0].pages[0].caption;
}

using Pages = std::vector<std::string>;

} // namespace

TEST(Walkthrough, showsAddedLinesBetweenTheirNeighbours) {
    EXPECT_EQ(pages("a\nc", "a\nb\nc"), Pages{" a|+b| c|"});
    EXPECT_EQ(pages("x\ny", "a\nx\ny\nz"), Pages{"+a| x| y|+z|"});
    EXPECT_EQ(pages("v\nx\ny\nw", "v\na\nx\nm\ny\nz\nw"), Pages{" v|+a| x|+m| y|+z| w|"});
    EXPECT_EQ(pages("w\nx\nm\ny\nv", "w\na\nx\nm\ny\nz\nv"), Pages{" w|+a| x|~⋯| y|+z| v|"});
    // An empty line is never replaced by a gap, and a block neither begins nor ends with one.
    EXPECT_EQ(pages("r\ns\nt\n\nu\nv\nw", "r\ns\nt\na\n\nu\nv\nw\nb"), Pages{" t|+a|_| w|+b|"});
    // Blanks around a line are no change. For repeated lines the table decides which is new.
    EXPECT_EQ(pages("  a\t\nb", "a\n\tb\n b"), Pages{" \tb|+ b|"});
    EXPECT_EQ(pages("a\nb", "a\n \nb\n// c"), Pages{});
}

TEST(Walkthrough, fillsPagesWithBlocks) {
    EXPECT_EQ(pages("", "a\nb\n\n\nc", 4), Pages{"+a|+b|_|+c|"});
    EXPECT_EQ(pages("", "a\nb\n\nc\nd", 4), (Pages{"+a|+b|", "+c|+d|"}));
    EXPECT_EQ(pages("", "0\n1\n2\n3\n4\n5\n6\n7\n8\n9\n\nx", 4),
              (Pages{"+0|+1|+2|+3|", "+4|+5|+6|+7|", "+8|+9|_|+x|"}));
    EXPECT_EQ(pages("", "a\nb", -1), (Pages{"+a|", "+b|"}));
}

TEST(Walkthrough, namesStagesAndEndsWithTheEpisode) {
    const std::vector<std::string> sources{"// A disc\n// Nothing but\n// a distance.\n//\n// x\na",
                                           "a\nb"};
    const auto plain = Walkthrough::stages("// Episode\nc", {}, sources, 5);
    ASSERT_EQ(plain.size(), 3u);
    EXPECT_EQ(plain[0].title, "A disc");
    EXPECT_EQ(plain[0].summary, "Nothing but a distance.");
    EXPECT_EQ(plain[1].title, "Stage 2");
    EXPECT_EQ(plain[2].number, 3);
    EXPECT_EQ(plain[2].title, "The finished shader");
    const auto closed =
        Walkthrough::stages("c", {.finalTitle = "Bye", .finalSummary = "Go on."}, {}, 5);
    EXPECT_EQ(closed[0].title, "Bye");
    EXPECT_EQ(closed[0].summary, "Go on.");
}

TEST(Walkthrough, makesSentencesOfComments) {
    EXPECT_EQ(caption("a // draw the sun\nb // draw the sun\nc // add glow!"),
              "Draw the sun. Add glow!");
    EXPECT_EQ(caption("a // draw the sun:\nb // Draw the sun\nc"), "Draw the sun: Draw the sun.");
    // Characters are grapheme clusters: a letter with its mark, and an ellipsis.
    EXPECT_EQ(caption("a // e\u0301tude…\nb // ßtraße"), "E\u0301tude… SStraße.");
    EXPECT_EQ(caption("a"), "");
    EXPECT_EQ(caption("// T\n\n// wait.\u0301\na"), "Wait.\u0301.");
}

TEST(Walkthrough, acceptsParsedSources) {
    const std::string first = "// One\na\nb", second = "// Two\na\nc", last = "a\nd";
    const EpisodeMeta meta{.finalSummary = "The end"};
    EXPECT_EQ(Walkthrough::stages(
                  Walkthrough::parsed(last), meta,
                  std::vector{Walkthrough::parsed(first), Walkthrough::parsed(second)}, 5),
              Walkthrough::stages(last, meta, std::vector{first, second}, 5));
}

TEST(WalkthroughSource, givesEachLineItsComment) {
    const auto source = Walkthrough::parsed("\n//\n// @still 4\n/* Title\n * and more */\n"
                                            "// @param a 1 0 2 How much\n\n"
                                            "// ----\n// The ramp,\n/// in steps\r\n"
                                            "  int a; // from 0\r\n"
                                            "\n// lost\n\nfloat b /* of c */ = 1; /* d\n"
                                            "\n   e */ int f;  \n// end");
    EXPECT_EQ(source.title, "Title");
    EXPECT_EQ(source.summary, "and more");
    EXPECT_EQ(source.lines, (Lines{{"", ""},
                                   {"// @param a 1 0 2 How much", ""},
                                   {"", ""},
                                   {"  int a;", "The ramp, in steps. From 0."},
                                   {"", ""},
                                   {"", ""},
                                   {"float b = 1;", "of c d"},
                                   {"int f;", "e"}}));
}

TEST(WalkthroughSource, separatesCodeAndCommentsAsTheCompilerDoes) {
    struct Row {
        std::string text;
        Lines lines;
    };
    for (const Row& row : std::vector<Row>{
             {R"(a = "// \" /*"; // b)", {{R"(a = "// \" /*";)", "b"}}},
             {R"(c = '"'; // 1)", {{R"(c = '"';)", "1"}}},
             {R"(c = '\''; d = 1'000; // 2)", {{R"(c = '\''; d = 1'000;)", "2"}}},
             {"a = \"b\nc // d", {{"a = \"b", ""}, {"c", "d"}}},
             {"a // b \\\n still\nc", {{"a", "b"}, {"c", "still"}}},
             {"a\u2028b\x0b\u0085c\rd", {{"a", ""}, {"b", ""}, {"", ""}, {"c", ""}, {"d", ""}}},
             {"a // b\u2028c\nd", {{"a", "b"}, {"d", "c"}}},
             {"a /* b", {{"a", "b"}}},
             {"a /", {{"a /", ""}}},
             {"x // @still 4\n//@tags a\ny", {{"x", "@still 4"}, {"y", ""}}},
             {"\xff // \xc3", {{"\ufffd", "\ufffd"}}},
         })
        EXPECT_EQ(Walkthrough::parsed(row.text).lines, row.lines) << row.text;
}

TEST(WalkthroughTimeline, showsAllPagesEquallyLong) {
    const WalkthroughTimeline timeline{.pageSeconds = 1.5, .pageCounts = {2, 0, 3}};
    EXPECT_EQ(timeline.duration(2), 4.5);
    EXPECT_EQ(timeline.start(0), 0);
    EXPECT_EQ(timeline.start(2), 3);
    EXPECT_EQ(timeline.start(3), timeline.total());
    EXPECT_EQ(timeline.total(), 7.5);
    EXPECT_EQ(timeline.page(0, 1.4), 0);
    EXPECT_EQ(timeline.page(0, 1.5), 1);
    EXPECT_EQ(timeline.page(0, 99), 1);
    EXPECT_EQ(timeline.page(0, -99), 0);
    EXPECT_EQ(timeline.page(1, 0), 0);
    EXPECT_DEATH(timeline.duration(3), "the stage exists");
    EXPECT_DEATH(timeline.start(4), "the stage exists or is the end");
    EXPECT_DEATH(timeline.page(0, 1e300), "64 bits");
}
