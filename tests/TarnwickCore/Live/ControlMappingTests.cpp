#include "TarnwickCore/Live/ControlMapping.h"
#include "TarnwickCore/Live/MIDIBinding.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <unordered_set>

namespace tarnwick {
namespace {

using NamedValue = ControlMapping::NamedValue;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float largest = std::numeric_limits<float>::max();

std::optional<NamedValue> set(const std::string& address, std::vector<float> numbers) {
    static const std::vector<ParamDecl> params{
        {"speed", 1, 0, 4, ""}, {"value", 1, -1, 1, ""}, {"speed", 1, 7, 8, ""}};
    return ControlMapping::value(OSC::Message{address, std::move(numbers)}, params);
}

TEST(ControlMapping, placesParametersByOSC) {
    EXPECT_EQ(set("/tarnwick/speed", {0.5f}), (NamedValue{"speed", 2}));
    EXPECT_EQ(set("/tarnwick/speed", {7, infinity}), (NamedValue{"speed", 4}));
    EXPECT_EQ(set("/tarnwick/speed", {-3}), (NamedValue{"speed", 0}));
    EXPECT_EQ(set("/tarnwick/speed/value", {3}), (NamedValue{"speed", 3}));
    EXPECT_EQ(set("/tarnwick/speed/value", {9}), (NamedValue{"speed", 4}));
    EXPECT_EQ(set("/tarnwick/value", {0.5f}), (NamedValue{"value", 0}));
    EXPECT_EQ(set("/tarnwick/value/value", {0.5f}), (NamedValue{"value", 0.5f}));
    for (const char* address : {"/tarnwick/", "/tarnwick//value", "/tarnwick/Speed", "/tarnwick",
                                "tarnwick/speed", "/other/speed", "/tarnwick/speed/value/value"})
        EXPECT_EQ(set(address, {0.5f}), std::nullopt) << address;
    EXPECT_EQ(set("/tarnwick/speed", {}), std::nullopt);
    const std::vector<ParamDecl> tenths{{"tenths", 0, -1.6f, 0.5f, ""}};
    EXPECT_EQ(ControlMapping::value({"/tarnwick/tenths", {1}}, tenths)->value,
              -1.6f + (0.5f - -1.6f)); // not 0.5f
    EXPECT_EQ(ControlMapping::value(127, tenths[0]), 0.5f);
    EXPECT_EQ(set("/tarnwick/speed", {std::nanf("")}), std::nullopt);
    EXPECT_EQ(set("/tarnwick/speed/value", {-infinity, 1}), std::nullopt);
}

TEST(ControlMapping, placesParametersByMIDI) {
    const ParamDecl param{"a", 0.3f, 0.1f, 0.7f, ""};
    EXPECT_EQ(ControlMapping::value(0, param), 0.1f);
    EXPECT_EQ(ControlMapping::value(127, param), 0.7f);
    EXPECT_EQ(ControlMapping::value(200, param), 0.7f);
    for (int cc = 1; cc < 128; cc++)
        EXPECT_LT(ControlMapping::value(static_cast<std::uint8_t>(cc - 1), param),
                  ControlMapping::value(static_cast<std::uint8_t>(cc), param));
    EXPECT_EQ(ControlMapping::value(64, {"a", 0, 0, 127, ""}), 64.0f / 127 * 127);
}

TEST(ControlMapping, isANumberInInfiniteRanges) {
    for (const auto& [min, max] :
         {std::pair{-largest, largest}, {-infinity, infinity}, {0.0f, infinity}, {-infinity, 0.0f}})
        for (const int cc : {0, 1, 64, 127}) {
            const float value =
                ControlMapping::value(static_cast<std::uint8_t>(cc), {"a", 0, min, max, ""});
            EXPECT_GE(value, min) << cc;
            EXPECT_LE(value, max) << cc;
        }
}

TEST(ControlMapping, readsControlChanges) {
    using Change = ControlMapping::ControlChange;
    EXPECT_EQ(ControlMapping::controlChange(0x20B14A7F), (Change{1, 0x4A, 0x7F}));
    EXPECT_EQ(ControlMapping::controlChange(0x23B00000), (Change{0, 0, 0}));
    EXPECT_EQ(ControlMapping::controlChange(0x2FBFFFFF), (Change{15, 127, 127}));
    for (const std::uint32_t word : {0x20900000u, 0x40B00000u, 0x10B00000u, 0xA0B00000u, 0u})
        EXPECT_EQ(ControlMapping::controlChange(word), std::nullopt) << word;
}

TEST(MIDIBinding, isLabelledHashedAndStored) {
    EXPECT_EQ((MIDIBinding{15, 7}).label(), "CC 7 · ch 16");
    std::unordered_set<MIDIBinding> all;
    for (int one = 0; one < 2048; one++)
        all.insert({static_cast<std::uint8_t>(one >> 7), static_cast<std::uint8_t>(one & 127)});
    EXPECT_EQ(all.size(), 2048u);
    EXPECT_EQ((MIDIBinding{2, 74}).encode(), R"({"channel":2,"controller":74})");
    for (const MIDIBinding& one : all)
        EXPECT_EQ(MIDIBinding::decode(std::string_view(one.encode())), one);
}

TEST(MIDIBinding, namesTheErrorInItsJSON) {
    const std::vector<std::pair<std::string_view, const char*>> rows{
        {"", "The text is not JSON."},
        {"[]", "A MIDI binding is not an object."},
        {R"({"channel":1})", "A MIDI binding has no whole number \"controller\"."},
        {R"({"channel":1.5,"controller":1})", "A MIDI binding has no whole number \"channel\"."},
        {R"({"channel":16,"controller":1})",
         "A MIDI binding has the channel 16, which is not from 0 to 15."},
        {R"({"channel":1,"controller":-1})",
         "A MIDI binding has the controller -1, which is not from 0 to 127."},
        {R"({"channel":18446744073709551615,"controller":1})",
         "A MIDI binding has the channel 18446744073709551615, which is not from 0 to 15."},
    };
    for (const auto& [text, sentence] : rows)
        EXPECT_EQ(thrownBy<MIDIBindingError>([&] { MIDIBinding::decode(text); }), sentence) << text;
}

} // namespace
} // namespace tarnwick
