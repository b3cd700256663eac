#include "TarnwickCore/Live/OSC.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace tarnwick {
namespace {

using namespace std::string_literals;
using Messages = std::vector<OSC::Message>;

Messages parsed(const std::string& packet) {
    // A vector of exactly its size, so that a sanitizer detects a read after its end.
    return OSC::parse(std::vector<std::uint8_t>(packet.begin(), packet.end()));
}

std::string element(const std::string& bytes) {
    return {static_cast<char>(bytes.size() >> 24), static_cast<char>(bytes.size() >> 16),
            static_cast<char>(bytes.size() >> 8), static_cast<char>(bytes.size())};
}

std::string bundle(const std::vector<std::string>& elements) {
    std::string bytes = "#bundle\0\0\0\0\0\0\0\0\1"s;
    for (const std::string& one : elements)
        bytes += element(one) + one;
    return bytes;
}

const std::string quarter = "\x3E\x80\0\0"s; // 0.25

TEST(OSC, readsNumbersAndSkipsOtherArguments) {
    EXPECT_EQ(parsed("/a\0\0,fi\0"s + quarter + "\0\0\0\3"s), (Messages{{"/a", {0.25f, 3}}}));
    EXPECT_EQ(parsed("/a\0\0,i\0\0\xFF\xFF\xFF\xFE"s), (Messages{{"/a", {-2}}}));
    EXPECT_EQ(parsed("/abc\0\0\0\0,sSbhtdTFNIq?f\0\0"s + "abc\0"s + "abcd\0\0\0\0"s +
                     "\0\0\0\5abcde\0\0\0"s + std::string(24, 'x') + quarter + "trailing"),
              (Messages{{"/abc", {0.25f}}}));
    EXPECT_EQ(parsed("/a\0\0,d\0\0\0\0\0\0\0\0\0\0"s), (Messages{{"/a", {}}}));
    EXPECT_EQ(parsed("/a\0\0,\0\0\0"s), (Messages{{"/a", {}}}));
}

TEST(OSC, dropsMessagesThatEndTooEarly) {
    const std::string whole =
        "/abc\0\0\0\0,fsb\0\0\0\0"s + quarter + "a\0\0\0"s + "\0\0\0\1b\0\0\0"s;
    EXPECT_EQ(parsed(whole), (Messages{{"/abc", {0.25f}}}));
    for (std::size_t length = 0; length < whole.size(); length++)
        EXPECT_EQ(parsed(whole.substr(0, length)), Messages{}) << length;
    // Lengths of blobs that are negative as signed numbers, or overflow when rounded up.
    EXPECT_EQ(parsed("/a\0\0,bf\0\xFF\xFF\xFF\xFC"s + quarter), Messages{});
    EXPECT_EQ(parsed("/a\0\0,bf\0\xFF\xFF\xFF\xFF"s + quarter), Messages{});
    EXPECT_EQ(parsed("/a\0\0f\0\0\0"s + quarter), Messages{});
    EXPECT_EQ(parsed("a/\0\0,f\0\0"s + quarter), Messages{});
}

TEST(OSC, readsMessagesInUpToThreeNestedBundles) {
    const std::string one = "/1\0\0,\0\0\0"s, two = "/2\0\0,\0\0\0"s;
    const Messages both{{"/1", {}}, {"/2", {}}};
    EXPECT_EQ(parsed(bundle({one, bundle({}), "", two})), both);
    EXPECT_EQ(parsed(bundle({bundle({bundle({one})}), two})), both);
    EXPECT_EQ(parsed(bundle({bundle({bundle({bundle({one})})}), two})), (Messages{{"/2", {}}}));
    // An invalid element is skipped; an invalid size ends its bundle.
    EXPECT_EQ(parsed(bundle({one, "bad", two})), both);
    EXPECT_EQ(parsed(bundle({one}) + "\0\0\1\0"s + two), (Messages{{"/1", {}}}));
    EXPECT_EQ(parsed(bundle({one}) + "\xFF\xFF\xFF\xFF"s + two), (Messages{{"/1", {}}}));
    EXPECT_EQ(parsed(bundle({bundle({one}) + "\xFF\xFF\xFF\xFF"s, two})), both);
    EXPECT_EQ(parsed(bundle({}).substr(0, 15)), Messages{});
}

TEST(OSC, replacesInvalidUTF8InAddresses) {
    EXPECT_EQ(parsed("/\xC3\xA9\xFF\xE2\x82/\0,\0\0\0"s), (Messages{{"/\u00E9\uFFFD\uFFFD/", {}}}));
}

TEST(OSC, readsBackWhatItWrites) {
    EXPECT_EQ(OSC::encode({"/abc", {}}).size(), 12u);
    const float infinity = std::numeric_limits<float>::infinity();
    for (const OSC::Message& message : {OSC::Message{"/", {}}, OSC::Message{"/abc", {0.1f, -0.f}},
                                        OSC::Message{"/é/value", {1, infinity, 2, 1e-45f}}})
        EXPECT_EQ(OSC::parse(OSC::encode(message)), Messages{message});
    EXPECT_TRUE(std::isnan(OSC::parse(OSC::encode({"/a", {std::nanf("")}}))[0].numbers[0]));
    EXPECT_EQ(OSC::parse(OSC::encode({"/a\0b\xFF"s, {1}})), (Messages{{"/a", {1}}}));
    EXPECT_EQ(OSC::parse(OSC::encode({"/\xFF"s, {1}})), (Messages{{"/\uFFFD", {1}}}));
}

} // namespace
} // namespace tarnwick
