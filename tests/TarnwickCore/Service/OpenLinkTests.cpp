#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Service/OpenLink.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Localhosts = OpenLink::Localhosts;
using Problem = OpenLink::Problem;

// The sentence for a refused link, otherwise the address, item and file name of its source.
std::string outcome(const std::string& link, Localhosts localhosts = Localhosts::refused) {
    const auto result = OpenLink::parse(link, localhosts);
    if (const auto* problem = std::get_if<Problem>(&result))
        return problem->description();
    const auto& open = std::get<OpenLink>(result);
    return open.source.string() + " " + open.item.value_or("-") + " " + open.fileName;
}

std::string ofSource(const std::string& source, Localhosts localhosts = Localhosts::refused) {
    return outcome("tarnwick://open?src=" + source, localhosts);
}

TEST(OpenLink, namesAFileOfTheSite) {
    EXPECT_EQ(outcome("TARNWICK://OPEN?x=y&src=https%3A%2F%2FTarnweb.EXAMPLE%2Fs%2Fab12%2F"
                      "source.metal%3Fv%3D1%23top&src=https://evil.org/b.metal"),
              "https://tarnweb.example/s/ab12/source.metal s/ab12 s-ab12.metal");
    EXPECT_EQ(ofSource("https://tarnweb.example/episode-07-plasma/stages/glow.metal"),
              "https://tarnweb.example/episode-07-plasma/stages/glow.metal episode-07/glow "
              "episode-07-plasma-glow.metal");
    // The decoded path is checked and the written one is kept: the query is decoded once.
    EXPECT_EQ(ofSource("https://tarnweb.example/episode-123-x/sourc%2565%252EMETAL"),
              "https://tarnweb.example/episode-123-x/sourc%65%2EMETAL - source.metal");
    EXPECT_EQ(ofSource("https://tarnweb.example/../%252e%252e%252fa%2500b.METAL"),
              "https://tarnweb.example/../%2e%2e%2fa%00b.METAL - a-b.metal");
}

TEST(OpenLink, isRefusedWithItsReason) {
    EXPECT_EQ(outcome("tarnwick://open"), "The link does not say which shader to open.");
    EXPECT_EQ(ofSource("&src=https://tarnweb.example/a.metal"),
              "The link does not say which shader to open.");
    for (const char* link : {"", "tarnwick:open?src=x", "tarnwick://opens?src=x",
                             "https://open/?src=https://tarnweb.example/a.metal"})
        EXPECT_EQ(outcome(link), "This is not a Tarnwick open link.") << link;

    const std::pair<const char*, const char*> rows[] = {
        {"a.metal", "the address is not a full URL"},
        {"https:///a.metal", "the address is not a full URL"},
        {"https://tarnweb.example/a%2520b%20.metal", "the address is not a full URL"},
        {"https://u@evil.org:1/a", "the address carries a user name"},
        {"https://:p@tarnweb.example/a.metal", "the address carries a user name"},
        {"https://tarnweb.example%40evil.org/a.metal", "the address carries a user name"},
        {"http://127.0.0.1:8080/a.metal", "the address is not https"},
        {"ftp://evil.org/a", "the address is not https"},
        {"https://Evil.ORG:1/a", "the address is on evil.org, not tarnweb.example"},
        {"https://tarnweb.example./a.metal",
         "the address is on tarnweb.example., not tarnweb.example"},
        {"https://eviltarnweb.example/a.metal",
         "the address is on eviltarnweb.example, not tarnweb.example"},
        {"https://tarnweb.example.evil.org/a.metal",
         "the address is on tarnweb.example.evil.org, not tarnweb.example"},
        {"https://tarnweb.example:443/a", "the address names a port"},
        {"https://tarnweb.example/a.metal/", "the address is not a .metal file"},
        {"https://tarnweb.example/a?.metal", "the address is not a .metal file"},
    };
    for (const auto& [source, reason] : rows)
        EXPECT_EQ(ofSource(source),
                  "Tarnwick only opens shaders from Tarnweb: " + std::string(reason))
            << source;
}

TEST(OpenLink, mayNameThisMachineIfAllowed) {
    const auto allowed = Localhosts::allowed;
    EXPECT_EQ(ofSource("http://127.0.0.1:8080/a.metal", allowed),
              "http://127.0.0.1:8080/a.metal - a.metal");
    EXPECT_EQ(ofSource("https://LOCALHOST/a.metal", allowed),
              "https://localhost/a.metal - a.metal");
    EXPECT_EQ(ofSource("ftp://localhost/a.metal", allowed),
              "Tarnwick only opens shaders from Tarnweb: the address is not http or https");
    EXPECT_EQ(ofSource("http://localhost.evil.org/a.metal", allowed),
              "Tarnwick only opens shaders from Tarnweb: the address is not https");
    EXPECT_EQ(ofSource("https://tarnweb.example:8080/a.metal", allowed),
              "Tarnwick only opens shaders from Tarnweb: the address names a port");
}

TEST(OpenLink, describesPaths) {
    const auto name = [](const char* path) {
        const auto [item, file] = OpenLink::describe(path);
        return item.value_or("-") + " " + file;
    };
    EXPECT_EQ(name("/episode-007-a-1/source.metal"), "episode-07 episode-007-a-1.metal");
    EXPECT_EQ(name("/episode-123-x/stages/0-9.metal"), "episode-123/0-9 episode-123-x-0-9.metal");
    for (const char* path :
         {"/episode-7-x/source.metal", "/episode-1234-x/source.metal", "/episode-07/source.metal",
          "/s//source.metal", "/s/Ab/source.metal", "/a/s/ab/source.metal",
          "/s/123456789012345678901234567890123/source.metal", "/episode-٠٧-x/source.metal",
          "/s/ab/source.metal\n"})
        EXPECT_EQ(name(path), "- source.metal") << path;
    EXPECT_EQ(name("/.metal"), "- metal.metal");
}

TEST(ForkedFrom, isReadFromTheFirstValidLine) {
    EXPECT_EQ(ForkedFrom::parse("x\n//@forked-from nothing\r\n \t// @forked-from  s/1a \n"
                                "// @forked-from s/2"),
              "s/1a");
    EXPECT_EQ(ForkedFrom::parse("// @forked-from s/1 too\n/* @forked-from s/1 */\n\xFF"),
              std::nullopt);
    for (const char* item : {"episode-07", "episode-123", "episode-07/0-", "s/0", "s/a1"})
        EXPECT_TRUE(ForkedFrom::isValid(item)) << item;
    EXPECT_TRUE(ForkedFrom::isValid("episode-07/" + std::string(64, 'a')));
    EXPECT_FALSE(ForkedFrom::isValid("episode-07/" + std::string(65, 'a')));
    EXPECT_TRUE(ForkedFrom::isValid("s/" + std::string(32, 'a')));
    EXPECT_FALSE(ForkedFrom::isValid("s/" + std::string(33, 'a')));
    for (const char* item : {"", "episode-7", "episode-1234", "episode-07/", "episode-07/-a",
                             "episode-07/A", "s/", "s/a-", "s/a\n", " s/a", "episode-٠٧"})
        EXPECT_FALSE(ForkedFrom::isValid(item)) << item;
}

TEST(ForkedFrom, isInsertedOnce) {
    const std::string once = ForkedFrom::insert("s/1", "float4\r\n");
    EXPECT_EQ(once, "// @forked-from s/1\nfloat4\r\n");
    EXPECT_EQ(ForkedFrom::insert("s/2", once), once);
    EXPECT_EQ(ForkedFrom::insert("s/A", "x"), "x");
    EXPECT_EQ(ForkedFrom::item("07-glow.metal"), "episode-07");
    EXPECT_EQ(ForkedFrom::item("007"), "episode-07");
    EXPECT_EQ(ForkedFrom::item("123-x"), "episode-123");
    for (const char* name : {"7-x", "1234-x", "x07", ""})
        EXPECT_EQ(ForkedFrom::item(name), std::nullopt) << name;
}

} // namespace
} // namespace tarnwick
