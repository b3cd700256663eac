#include "TarnwickCore/Animation/Variations.h"
#include "TarnwickCore/Movies/VideoChapters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tarnwick;

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr auto lastIndex = std::numeric_limits<std::int64_t>::max();

const std::vector<ParamDecl> params{{"speed", 0.35F, 0, 1.5F, ""},
                                    {"volume", 0.5F, 0, 1, ""},
                                    {"scale", 1.6F, 0.6F, 4, ""},
                                    {"tilt", 0, -3, 3, ""},
                                    {"count", 12, 0.25F, 1000, ""}};

} // namespace

// The expected numbers come from arbitrary-precision integers and doubles rounded to single.
TEST(Variations, areTheSeriesOfTheirSeed) {
    const auto few = Variations::make(params, 7, 1, 3, 60, 30, 0.5F);
    const std::vector<Variation> expected{
        {1,
         27.5,
         {{"speed", 0.3F}, {"scale", 1.64F}, {"tilt", -1.22F}, {"count", 369.23F}},
         "count 369.23, tilt -1.22"},
        {2,
         27.5,
         {{"speed", 0.56F}, {"scale", 1.38F}, {"tilt", 1.15F}, {"count", 269.48F}},
         "count 269.48, tilt 1.15"},
        {3,
         20,
         {{"speed", 0.33F}, {"scale", 1.98F}, {"tilt", -1.27F}, {"count", 6.15F}},
         "count 6.15, tilt -1.27"}};
    EXPECT_EQ(few, expected);

    // Seeds and indices at the ends of their ranges; a spread above 1 is 1.
    const auto wide = Variations::make(params, ~std::uint64_t{0}, -2, 2, 90.5, 0.25, infinite);
    const Variation before{
        -2,
        77,
        {{"speed", 0.41F}, {"scale", 3.86F}, {"tilt", 2.69F}, {"count", 400.57F}},
        "count 400.57, tilt 2.69"};
    EXPECT_EQ(wide.front(), before);
    const auto last = Variations::make(params, 0xdeadbeefcafef00d, lastIndex, 2, 600, 30, 0.7F);
    const Variation end{lastIndex,
                        282,
                        {{"speed", 1.11F}, {"scale", 1.6F}, {"tilt", 0.8F}, {"count", 7.73F}},
                        "count 7.73, tilt 0.8"};
    EXPECT_EQ(last.front(), end);
    EXPECT_EQ(last.back().index, std::numeric_limits<std::int64_t>::min());

    // A variation is independent of the series.
    for (std::int64_t k = 0; k < 3; ++k)
        EXPECT_EQ(Variations::make(params, 7, 1 + k, 1, 60, 30, 0.5F).front(),
                  few[static_cast<std::size_t>(k)]);
    EXPECT_TRUE(Variations::make(params, 7, 1, -1, 60, 30, 0.5F).empty());
}

TEST(Variations, withoutSpreadHaveNoHighlights) {
    const std::vector<ParamDecl> odd{{"half", 0.125F, 0, 1, ""},
                                     {"below", -0.125F, -1, 1, ""},
                                     {"edge", 0.004F, 0.003F, 1, ""},
                                     {"large", 3e37F, -3e38F, 3e38F, ""},
                                     {"endless", 1, -infinite, infinite, ""},
                                     {"none", std::nanf(""), 0.5F, 1, ""}};
    const ParamValues rounded{{"half", 0.13F},  {"below", -0.13F}, {"edge", 0.003F},
                              {"large", 3e38F}, {"endless", 1},    {"none", 0.5F}};
    for (const float spread : {0.0F, -1.0F, std::nanf("")}) {
        const auto series = Variations::make(odd, 3, 0, 1, 60, 30, spread);
        EXPECT_EQ(series.front().values, rounded);
        EXPECT_EQ(series.front().highlights, "");
    }
}

TEST(Variations, startEarlyEnoughToEndWithinTheLength) {
    for (const auto& [length, duration] : {std::pair{30.0, 60.0},
                                           {30.0, 30.0},
                                           {std::nan(""), 30.0},
                                           {INFINITY, 30.0},
                                           {INFINITY, INFINITY},
                                           {1.7e308, 1.0}})
        for (const Variation& variation : Variations::make({}, 5, 0, 9, length, duration, 1))
            EXPECT_EQ(variation.start, 0) << length << " " << duration;
    double greatest = 0;
    for (const Variation& variation : Variations::make(params, 5, -50, 100, 40, 30, 1)) {
        EXPECT_EQ(variation.start, std::floor(variation.start * 2) / 2);
        greatest = std::max(greatest, variation.start);
        EXPECT_FALSE(variation.values.contains("volume"));
    }
    EXPECT_GT(greatest, 9);
    EXPECT_LE(greatest, 10);
}

TEST(VideoChapters, startWhereTheirSegmentsStart) {
    const std::vector<Variation> series{
        {4, 3, {{"warp", 2}, {"hue", 10.5F}, {"bend", -0.25F}}, "warp 2"},
        {5, 0, {{"warp", 100}, {"hue", infinite}}, ""}};
    const VideoChapters list = VideoChapters::variations(series, 30, 12.5);
    EXPECT_EQ(list, (VideoChapters{72.5,
                                   {{12.5, "warp 2", "bend -0.25, hue 10.5, warp 2"},
                                    {42.5, "Default settings", "hue inf, warp 100"}}}));
    EXPECT_EQ(VideoChapters::variations({}, 30, 12.5), (VideoChapters{12.5, {}}));
}

TEST(VideoChapters, areReadAsTheyAreWritten) {
    const VideoChapters list{70, {{10, "a \"b\" \u00e9", "hue 0.3"}}};
    const char* text = R"({"duration":70.0,"chapters":[{"at":10.0,"title":"a \"b\" )"
                       "\u00e9\",\"settings\":\"hue 0.3\"}]}";
    EXPECT_EQ(list.json(), text);
    EXPECT_EQ(VideoChapters::decode(text), list);
    EXPECT_EQ(VideoChapters::decode((VideoChapters{0, {{0, "\xff", ""}}}).json()).chapters[0].title,
              "\uFFFD");
    EXPECT_THROW((VideoChapters{infinite, {}}).json(), VideoChaptersError);
    for (const char* wrong :
         {"", "[]", R"({"duration":1})", R"({"duration":true,"chapters":[]})",
          R"({"duration":1,"chapters":{}})", R"({"duration":1,"chapters":[{"at":1,"title":"a"}]})",
          R"({"duration":1,"chapters":[{"at":1,"title":2,"settings":""}]})"})
        EXPECT_THROW(VideoChapters::decode(wrong), VideoChaptersError) << wrong;
}
