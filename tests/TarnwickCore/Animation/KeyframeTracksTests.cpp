#include "TarnwickCore/Animation/KeyframeTracks.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp> // with which strings convert to documents

#include <cmath>
#include <limits>
#include <random>

using namespace tarnwick;

using Ease = KeyframeTracks::Ease;
using Key = KeyframeTracks::Key;

TEST(KeyframeTracks, setKeepsKeysSortedAndApart) {
    KeyframeTracks tracks;
    tracks.set("a", 2, 20);
    tracks.set("a", -1, 1, Ease::hold);
    tracks.set("a", 0.004, 5);
    tracks.set("a", 0.009, 9);
    const std::vector<Key> expected{
        {0, 5, Ease::hold}, {0.009, 9, Ease::smooth}, {2, 20, Ease::smooth}};
    EXPECT_EQ(tracks.tracks["a"], expected);

    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round)
        tracks.set("b", static_cast<double>(random() % 1000) / 250, 1);
    const auto keys = tracks.keys("b");
    for (std::size_t index = 1; index < keys.size(); ++index)
        EXPECT_GE(keys[index].time - keys[index - 1].time, KeyframeTracks::snap);
}

TEST(KeyframeTracks, editsOfMissingKeysChangeNothing) {
    KeyframeTracks tracks;
    tracks.setEase("a", 0, Ease::hold);
    tracks.remove("a", 0);
    tracks.clear("a");
    EXPECT_EQ(tracks, KeyframeTracks{});
    tracks.set("a", 1, 1);
    const KeyframeTracks before = tracks;
    tracks.setEase("a", 2, Ease::hold);
    tracks.remove("a", 2);
    EXPECT_EQ(tracks, before);
    tracks.setEase("a", 1.004, Ease::hold);
    EXPECT_EQ(tracks.keys("a")[0].ease, Ease::hold);
    tracks.remove("a", 1);
    EXPECT_TRUE(tracks.isEmpty() && tracks.tracks.empty());
}

TEST(KeyframeTracks, valuesChangeByTheEaseOfTheEarlierKey) {
    for (const Ease ease : KeyframeTracks::allEases) {
        KeyframeTracks tracks;
        tracks.tracks["a"] = {{0, 1, ease}, {4, 3, ease}, {6, 7, ease}};
        auto at = [&](double time) { return *tracks.value("a", time); };
        EXPECT_EQ(at(-1), 1);
        EXPECT_EQ(at(4), 3);
        EXPECT_EQ(at(9), 7);
        EXPECT_EQ(at(2), ease == Ease::hold ? 1 : 2);
        EXPECT_EQ(at(1), ease == Ease::hold ? 1 : ease == Ease::linear ? 1.5f : 1.3125f);
        EXPECT_EQ(at(3.9999999) == 1, ease == Ease::hold);
    }
}

TEST(KeyframeTracks, useTheLaterOfTwoKeysAtOneTime) {
    KeyframeTracks tracks;
    tracks.tracks["a"] = {{0, 1, {}}, {1, 2, {}}, {1, 3, {}}, {2, 3, {}}};
    EXPECT_EQ(tracks.value("a", 1), 3);
    EXPECT_LT(*tracks.value("a", 0.999), 2);
}

TEST(KeyframeTracks, valuesAreWrittenOverTheBase) {
    KeyframeTracks tracks;
    EXPECT_EQ(tracks.lastTime(), 0);
    tracks.set("a", 3, 5);
    tracks.set("b", 1, 6);
    tracks.tracks["empty"];
    EXPECT_EQ(tracks.values(0, {}), (ParamValues{{"a", 5}, {"b", 6}}));
    EXPECT_EQ(tracks.values(0, {{"a", 1}, {"empty", 2}, {"c", 3}}),
              (ParamValues{{"a", 5}, {"b", 6}, {"c", 3}, {"empty", 2}}));
    EXPECT_EQ(tracks.lastTime(), 3);
    EXPECT_FALSE(tracks.value("empty", 0));
}

TEST(KeyframeTracks, areFittedToDeclarations) {
    KeyframeTracks tracks;
    tracks.tracks = {
        {"a", {{0, 5, Ease::hold}, {1, -5, Ease::linear}}}, {"gone", {{0, 1, {}}}}, {"empty", {}}};
    const std::vector<ParamDecl> params{
        {"a", 0, 0, 9, ""}, {"empty", 0, 0, 1, ""}, {"a", 0, 0, 1, ""}, {"other", 0, 0, 1, ""}};
    KeyframeTracks expected;
    expected.tracks["a"] = {{0, 1, Ease::hold}, {1, 0, Ease::linear}};
    EXPECT_EQ(tracks.fitted(params), expected);
    EXPECT_TRUE(tracks.fitted({}).tracks.empty());
}

TEST(KeyframeTracks, areReadAsTheyAreWritten) {
    const char* text = R"({"tracks":{"speed":[{"time":0.0,"value":0.1,"ease":"smooth"},)"
                       R"({"time":4.5,"value":3.0,"ease":"hold"}]}})";
    const KeyframeTracks tracks = KeyframeTracks::decode(std::string(text));
    EXPECT_EQ(tracks.keys("speed")[0], (Key{0, 0.1f, Ease::smooth}));
    EXPECT_EQ(tracks.encode(), text);
    EXPECT_TRUE(KeyframeTracks::decode(R"({"tracks":{},"more":1})").tracks.empty());

    KeyframeTracks random;
    std::mt19937 bits(7);
    for (int count = 0; count < 200; ++count)
        random.set("x", static_cast<double>(bits()) / 1e6,
                   std::ldexp(static_cast<float>(bits()), int(bits() % 100) - 60));
    EXPECT_EQ(KeyframeTracks::decode(random.encode()), random);
    random.set("x", 0, std::numeric_limits<float>::infinity());
    EXPECT_THROW(random.encode(), DocumentError);
}

TEST(KeyframeTracks, nameTheErrorInTheirJSON) {
    const std::vector<std::pair<const char*, const char*>> rows{
        {"{}", "The document has no \"tracks\"."},
        {R"({"tracks":[]})", "\"tracks\" is not an object."},
        {R"({"tracks":{"a":1}})", "The track of \"a\" is not a list."},
        {R"({"tracks":{"a":[{"time":0,"ease":"hold"}]}})", "Key 1 of \"a\" has no \"value\"."},
        {R"({"tracks":{"a":[{"time":true,"value":1,"ease":"hold"}]}})",
         "Key 1 of \"a\" has a \"time\" that is not a number."},
        {R"({"tracks":{"a":[{"time":0,"value":1e39,"ease":"hold"}]}})",
         "Key 1 of \"a\": its \"value\" is beyond the greatest float, 3.4028235e38."},
        {R"({"tracks":{"a":[{"time":0,"value":1,"ease":"Hold"}]}})",
         "Key 1 of \"a\" has an \"ease\" that is not one of linear, smooth and hold."},
    };
    for (const auto& [text, sentence] : rows)
        EXPECT_EQ(thrownBy<DocumentError>([&] { KeyframeTracks::decode(text); }), sentence) << text;
}
