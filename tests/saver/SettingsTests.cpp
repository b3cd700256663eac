#include "saver/Settings.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(Settings, areReadWhole) {
    const auto settings = decodeSettings(R"({"name": "Dusk", "values": {"speed": 0.5, "far": 2},
        "keys": {"tracks": {"speed": [{"time": 1, "value": 3, "ease": "hold"}]}}, "other": null})");
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->name, "Dusk");
    EXPECT_EQ(settings->values, (ParamValues{{"speed", 0.5f}, {"far", 2.0f}}));
    EXPECT_EQ(settings->keys.value("speed", 9), 3.0f);
}

TEST(Settings, areNothingUnlessAllOfThemHolds) {
    for (const char* document : {
             "",
             "[]",
             "{",
             "null",
             R"({"name": "x", "values": {}})",
             R"({"name": "x", "keys": {"tracks": {}}})",
             R"({"values": {}, "keys": {"tracks": {}}})",
             R"({"name": 1, "values": {}, "keys": {"tracks": {}}})",
             R"({"name": "x", "values": [], "keys": {"tracks": {}}})",
             R"({"name": "x", "values": {"a": "1"}, "keys": {"tracks": {}}})",
             R"({"name": "x", "values": {"a": true}, "keys": {"tracks": {}}})",
             R"({"name": "x", "values": {"a": 1e39}, "keys": {"tracks": {}}})",
             R"({"name": "x", "values": {}, "keys": {}})",
             R"({"name": "x", "values": {}, "keys": {"tracks": {"a": [{"time": 0}]}}})",
             "{\"name\": \"\xFF\", \"values\": {}, \"keys\": {\"tracks\": {}}}",
         })
        EXPECT_FALSE(decodeSettings(document)) << document;
    EXPECT_TRUE(decodeSettings(R"({"name": "", "values": {}, "keys": {"tracks": {}}})"));
}

} // namespace
} // namespace tarnwick
