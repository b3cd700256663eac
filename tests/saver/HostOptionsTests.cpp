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
