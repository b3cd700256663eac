#include "TarnwickCore/Animation/Settings.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tarnwick {
namespace {

using Ease = KeyframeTracks::Ease;

TEST(Settings, areReadFromTheirDocument) {
    const Settings settings =
        Settings::decode(R"({"name": "Dusk", "values": {"speed": 0.5, "far": 2},
        "keys": {"tracks": {"speed": [{"time": 1, "value": 3, "ease": "hold"}]}}, "other": null})");
    EXPECT_EQ(settings.name, "Dusk");
    EXPECT_EQ(settings.values, (ParamValues{{"speed", 0.5f}, {"far", 2.0f}}));
    EXPECT_EQ(settings.valuesAt(9), (ParamValues{{"speed", 3.0f}, {"far", 2.0f}}));
}

TEST(Settings, nameThePlaceAndReasonOfAnError) {
    const std::string complete = R"("values": {}, "keys": {"tracks": {}}})";
    const std::vector<std::pair<std::string, std::string>> rows{
        {"",
         "Line 1, column 1 is not JSON: unexpected end of input; expected '[', '{', or a literal."},
        {"{\"name\": \"\u00e9\",\n \"a\": \"\u00e9\", }",
         "Line 2, column 12 is not JSON: unexpected '}'; expected string literal."},
        {"{\"name\": \"\xFF\", " + complete,
         "Line 1, column 11 is not JSON: invalid string: ill-formed UTF-8 byte."},
        {R"({"name": 1e999, )" + complete, "It has a number beyond those of double precision."},
        {"[]", "The document is not an object."},
        {R"({"tracks": {}})", "The document has no \"name\", no \"values\" and no \"keys\"."},
        {R"({"name": "x", "values": {}})", "The document has no \"keys\"."},
        {R"({"name": "x", "keys": {"tracks": {}}})", "The document has no \"values\"."},
        {"{" + complete, "The document has no \"name\"."},
        {R"({"name": 1, )" + complete, "\"name\" is not text."},
        {R"({"name": "x", "values": [], "keys": {"tracks": {}}})", "\"values\" is not an object."},
        {R"({"name": "x", "values": {"a": true}, "keys": {"tracks": {}}})",
         "The value of \"a\" is not a number."},
        {R"({"name": "x", "values": {}, "keys": {}})", "\"keys\" has no \"tracks\"."},
    };
    for (const auto& [text, sentence] : rows)
        EXPECT_EQ(thrownBy<DocumentError>([&] { Settings::decode(text); }), sentence) << text;
}

// The shortest digits of the greatest float are above it as a double.
TEST(Settings, holdTheGreatestFloat) {
    constexpr float greatest = std::numeric_limits<float>::max();
    const Settings settings = Settings::decode(
        R"({"name": "", "values": {"a": 3.4028235e38, "b": -3.4028235e38}, "keys": {"tracks":
        {"a": [{"time": 0, "value": 3.4028235e38, "ease": "hold"}]}}})");
    EXPECT_EQ(settings.values, (ParamValues{{"a", greatest}, {"b", -greatest}}));
    EXPECT_EQ(settings.keys.value("a", 0), greatest);
    EXPECT_EQ(Settings::decode(settings.encode()), settings);
}

TEST(Settings, areReadAsTheyAreWritten) {
    std::mt19937 bits(11);
    Settings settings{.name = "\"Dusk\" \\ \n \u00e9"};
    for (int count = 0; count < 500; ++count) {
        const float value = std::ldexp(static_cast<float>(bits()), int(bits() % 200) - 160);
        settings.values["v" + std::to_string(count)] = value;
        settings.keys.set("k", static_cast<double>(bits()) / 1e6, -value);
    }
    EXPECT_EQ(Settings::decode(settings.encode()), settings);
    EXPECT_EQ(decodeKeys(settings.encode()), settings.keys);
    EXPECT_EQ(decodeKeys(settings.keys.encode()), settings.keys);
    settings.values = {{"a", 0.1f}};
    EXPECT_NE(settings.encode().find("\"a\": 0.1\n"), std::string::npos);
    settings.values = {{"a", std::nanf("")}};
    EXPECT_THROW(settings.encode(), DocumentError);
}

TEST(Settings, areFittedToDeclarationsAndListTheChanges) {
    const std::vector<ParamDecl> params{{"speed", 1, 0, 3, ""}, {"hue", 0, -1, 1, ""}};
    Settings settings{.name = "Dusk", .values = {{"speed", 99}, {"hue", 0.5f}, {"gone", 1}}};
    settings.keys.tracks = {{"hue", {{0, 1, Ease::hold}, {4, 7, Ease::hold}, {5, -7, Ease::hold}}},
                            {"lost", {{0, 1, Ease::hold}}}};

    Settings fitted{.name = "Dusk", .values = {{"speed", 3}, {"hue", 0.5f}}};
    fitted.keys.tracks = {{"hue", {{0, 1, Ease::hold}, {4, 1, Ease::hold}, {5, -1, Ease::hold}}}};
    EXPECT_EQ(settings.fitted(params), fitted);
    EXPECT_EQ(settings.misfits(params, "e.metal"),
              (std::vector<std::string>{
                  "e.metal declares no parameter \"gone\"; it declares speed, hue.",
                  "speed goes from 0 to 3; 99 counts as 3.",
                  "hue goes from -1 to 1; its key of 7 at 4 s counts as 1, and 1 more of its keys "
                  "are clamped.",
                  "e.metal declares no parameter \"lost\"; it declares speed, hue."}));
    EXPECT_TRUE(fitted.misfits(params, "e.metal").empty());
}

} // namespace
} // namespace tarnwick
