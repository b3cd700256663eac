#include "saver/HostOptions.h"

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
}

TEST(HostOptions, refuseWhatSaysNothingSensible) {
    const std::vector<std::vector<const char*>> lines{
        {"--colour"},           {"--window-id"},        {"--window-id", "0x"},
        {"--window-id", "w"},   {"--size", "0x0"},      {"--size", "100000x100000"},
        {"--size", "12"},       {"--size", "12x"},      {"--offscreen", "0"},
        {"--offscreen", "nan"}, {"--offscreen", "1e9"}, {"--root=yes"},
        {"a.metal", "b.metal"}, {"--bundle"},           {"--"},
        {"--no-settings"},      {"--settings", "a"},    {"e", "--settings=a", "--no-settings"},
    };
    for (const auto& line : lines)
        EXPECT_THROW(parse(line), UsageError) << line.front();
}

} // namespace
} // namespace tarnwick
