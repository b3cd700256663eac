#include "TarnwickCore/CommandLine/Arguments.h"
#include "saver/CommandLine/HostOptions.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnwick {
namespace {

HostOptions parse(std::vector<const char*> arguments) {
    return parseHostOptions(arguments);
}

TEST(HostOptions, takeOneDashOrTwo) {
    EXPECT_TRUE(parse({"-root"}).root);
    EXPECT_TRUE(parse({"--root"}).root);
    EXPECT_EQ(parse({"-window-id", "0x1a"}).window, 26u);
    EXPECT_EQ(parse({"--window-id=26"}).window, 26u);
    const HostOptions options = parse({"--preview", "--bundle", "b", "e.metal", "--size", "30x20"});
    EXPECT_TRUE(options.preview);
    EXPECT_EQ(options.bundle, "b");
    EXPECT_EQ(options.episode, "e.metal");
    EXPECT_EQ(options.size, (PixelSize{30, 20}));
    EXPECT_EQ(parse({}).picture, "saver.png");
}

// As XScreenSaver's settings write them.
TEST(HostOptions, takeParameters) {
    const HostOptions options = parse({"--root", "--param-speed", "-0.75", "-param-hue=.5",
                                       "--param", "red=1", "--window-id", "7"});
    EXPECT_EQ(options.params, (ParamValues{{"speed", -0.75f}, {"hue", 0.5f}, {"red", 1.0f}}));
    EXPECT_EQ(options.window, 7u);
    for (const char* word : {"red", "red=", "red=nan", "red=1x"})
        EXPECT_THROW(parse({"--param", word}), UsageError) << word;
    EXPECT_THROW(parse({"--param-red"}), UsageError);
}

TEST(HostOptions, refuseWhatSaysNothingSensible) {
    const std::vector<std::vector<const char*>> lines{
        {"--colour"},         {"--window-id", "0x"},  {"--window-id", "w"},
        {"--offscreen", "0"}, {"--offscreen", "1e9"}, {"a.metal", "b.metal"},
        {"--no-settings"},    {"--settings", "a"},    {"e", "--settings=a", "--no-settings"},
    };
    for (const auto& line : lines)
        EXPECT_THROW(parse(line), UsageError) << line.front();
}

} // namespace
} // namespace tarnwick
