#include "TarnwickRender/WalkthroughRenderer.h"
#include "TarnwickRender/Walkthroughs/WalkthroughCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace tarnwick;

namespace {

using Kind = WalkthroughLine::Kind;
using Area = WalkthroughLayout::Area;

struct Shape {
    std::int64_t width, height;
};

constexpr Shape shapes[] = {{320, 180}, {180, 320}, {200, 200}, {400, 160}, {160, 160}};

// Of the byte `channel` of all pixels inside of `area`, the greatest; of those outside of it.
struct Greatest {
    int inside = 0, outside = 0;
};

Greatest greatest(const Picture& picture, const Area& area, std::size_t channel) {
    Greatest result;
    for (std::int64_t y = 0; y < picture.height; ++y)
        for (std::int64_t x = 0; x < picture.width; ++x) {
            const bool isInside =
                x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
            int& side = isInside ? result.inside : result.outside;
            side = std::max<int>(side,
                                 picture.bytes[static_cast<std::size_t>(y) * picture.bytesPerRow +
                                               static_cast<std::size_t>(x) * 4 + channel]);
        }
    return result;
}

// Full pages of what is hard to place: lines beyond any width, letters of two columns, tabs.
WalkthroughStage hardStage(std::int64_t capacity) {
    std::string endless, words;
    for (int i = 0; i < 100; ++i) {
        endless += "aVeryLongNameWithoutABlank";
        words += "水と光 words\t";
    }
    WalkthroughStage stage{.number = 12, .title = words, .summary = words};
    for (int page = 0; page < 14; ++page) {
        stage.pages.push_back({.caption = words});
        for (std::int64_t line = 0; line < capacity; ++line)
            stage.pages.back().lines.push_back({line % 2 == 0 ? endless : "\t" + words});
    }
    return stage;
}

} // namespace

TEST(WalkthroughRenderer, keepsWordsOffThePictureAndTheMargins) {
    for (const auto [width, height] : shapes) {
        const WalkthroughRenderer renderer(width, height);
        const WalkthroughLayout layout = WalkthroughLayout::of(width, height);
        EXPECT_GE(renderer.capacity(), 8);
        EXPECT_LE(renderer.capacity(), 30);
        const WalkthroughStage stage = hardStage(renderer.capacity());
        const Picture overlay = renderer.pages(stage, 12).overlay(13);
        const Greatest alpha = greatest(overlay, layout.text, 3);
        EXPECT_EQ(alpha.outside, 0) << width << "x" << height;
        EXPECT_GT(alpha.inside, 200);
        const Area& picture = renderer.picture();
        const bool isBeside = layout.text.x >= picture.x + picture.width;
        EXPECT_TRUE(isBeside || layout.text.y >= picture.y + picture.height);
    }
}

TEST(WalkthroughRenderer, lightsAddedLinesAndDimsOthers) {
    const WalkthroughRenderer renderer(640, 360);
    const Area& text = WalkthroughLayout::of(640, 360).text;
    // The brightest green below the heading: of the letters, and of the line beside them.
    auto brightness = [&](Kind kind, std::int64_t left) {
        const WalkthroughStage stage{.pages = {{.lines = {{"WWWW", kind}}}}};
        return greatest(renderer.pages(stage, 1).overlay(0),
                        {text.x + left, text.y + text.height / 2, text.width, text.height / 2}, 1)
            .inside;
    };
    const int added = brightness(Kind::added, 10), context = brightness(Kind::context, 10);
    EXPECT_GT(added, 180);
    EXPECT_GT(context, 60);
    EXPECT_LT(context, added * 2 / 3);
    EXPECT_GT(brightness(Kind::added, 200), brightness(Kind::context, 200) + 5);
}

// A family of four people, one character of 25 bytes, at each place where the line can be cut.
TEST(WalkthroughCode, cutsLongLinesBetweenCharacters) {
    const std::string family = "\U0001F468\u200d\U0001F469\u200d\U0001F467\u200d\U0001F466";
    for (std::size_t before = 480; before < 520; ++before) {
        const std::string line = std::string(before, 'x') + family + std::string(80, 'y');
        const std::string text = codeBlocks({.lines = {{line}}})[0].text;
        const std::string shown = text.substr(0, text.find("…"));
        EXPECT_TRUE(line.starts_with(shown));
        EXPECT_TRUE(shown.size() <= before || shown.size() >= before + family.size()) << before;
    }
}

TEST(WalkthroughRenderer, showsThePictureUnderTheOverlay) {
    const WalkthroughRenderer renderer(320, 180);
    const Area& area = renderer.picture();
    Picture picture{static_cast<std::uint32_t>(area.width), static_cast<std::uint32_t>(area.height),
                    static_cast<std::size_t>(area.width) * 4};
    picture.bytes.assign(picture.bytesPerRow * picture.height, 200);
    const WalkthroughStage stage{.title = "Title", .pages = {{}}};
    const Picture frame = renderer.frame(picture, renderer.pages(stage, 1).overlay(0));
    EXPECT_EQ(frame.bytes[0], 200);
    const std::size_t corner = frame.bytes.size() - 4;
    EXPECT_EQ(frame.bytes[corner], std::lround(255 * WalkthroughRenderer::background.blue));
    EXPECT_GT(greatest(frame, area, 0).outside, 200); // the title
}
